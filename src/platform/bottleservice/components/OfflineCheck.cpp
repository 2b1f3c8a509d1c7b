#include "bottleservice/components/OfflineCheck.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

#include "bottleservice/components/Recipe.h"
#include "bottleservice/components/Sources.h"

namespace OfflineCheck {

Verdict verdict(const QStringList& names, const QSet<QString>& files, const Recipes& recipes) {
    Verdict result;
    for (const QString& name : names) {
        Reason error;
        QString unusable;
        const QVector<Recipe> plan = recipes.plan(name, {}, &error, &unusable);
        QStringList lacking;
        for (const Recipe& recipe : plan) {
            const QStringList needs = recipe.files();
            const bool isComplete = !recipe.steps.isEmpty() &&
                                    std::all_of(needs.begin(), needs.end(), [&files](const QString& file) {
                                        return files.contains(file);
                                    });
            if (!isComplete)
                lacking += recipe.name;
        }
        if (plan.isEmpty())
            lacking += unusable;
        if (lacking.isEmpty())
            result.valid += name;
        else
            result.missing.insert(name, lacking);
    }
    return result;
}

QSet<QString> usableFiles(const QString& directory, const Sources& sources) {
    QSet<QString> files;
    for (const QFileInfo& file : QDir(directory).entryInfoList(QDir::Files)) {
        const qint64 size = sources.find(file.fileName()).size;
        if (size < 0 || size == file.size())
            files += file.fileName();
    }
    return files;
}

QStringList needed(const QString& name, const Recipes& recipes) {
    Reason error;
    QStringList names;
    for (const Recipe& recipe : recipes.plan(name, {}, &error))
        names += recipe.name;
    names.removeAll(name);
    return names;
}

QStringList inOrder(const QStringList& names, const Recipes& recipes) {
    QStringList order;
    for (const QString& name : names) {
        for (const QString& each : needed(name, recipes) + QStringList{name}) {
            if (names.contains(each) && !order.contains(each))
                order += each;
        }
    }
    return order;
}

Reason conflict(const OfflineList& list, const Sources& sources, const QString& archive) {
    for (auto file = list.files.begin(); file != list.files.end(); ++file) {
        const Source known = sources.find(file.key());
        if (known.isChosen)
            continue;  // the user has chosen another file now
        if (known.size >= 0 && known.size != file->size)
            return Reason(Reason::OtherSize,
                          {file.key(), archive, QString::number(file->size), QString::number(known.size)});
        if (!known.sha256.isEmpty() && known.sha256 != file->sha256)
            return Reason(Reason::OtherChecksum, {file.key(), archive});
    }
    return {};
}

}  // namespace OfflineCheck
