#include "packaging/manifest/RememberedAnswers.h"

#include <QDebug>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QThreadPool>

#include "backend/InBackground.h"
#include "fenk/system/RegularFile.h"

namespace {

constexpr qint64 MaximumBytes = 64 * 1024;

/// The name comes from the bottle.
bool isRemembered(const ManifestForm::Member& member) {
    return member.value != &ManifestForm::name;
}

QString fileOf(const QString& bottlePath) {
    return bottlePath + "/dump-manifest.json";
}

}  // namespace

std::optional<ManifestForm> RememberedAnswers::read(const QString& bottlePath) {
    const QString path = fileOf(bottlePath);
    const QFileInfo info(path);
    if (bottlePath.isEmpty() || (!info.exists() && !info.isSymLink()))
        return std::nullopt;
    const auto text = Fenk::RegularFile::read(path, MaximumBytes);
    const QJsonDocument document = QJsonDocument::fromJson(text.value_or(QByteArray()));
    if (!document.isObject() || text->size() > MaximumBytes) {
        qWarning().noquote() << "no answers of an export in" << path;
        return std::nullopt;
    }
    ManifestForm form;
    for (const ManifestForm::Member& member : ManifestForm::members()) {
        if (isRemembered(member))
            form.*member.value = document.object().value(QLatin1String(member.key)).toString();
    }
    return form;
}

bool RememberedAnswers::write(const QString& bottlePath, const ManifestForm& form) {
    QJsonObject answers;
    for (const ManifestForm::Member& member : ManifestForm::members()) {
        if (isRemembered(member))
            answers.insert(QLatin1String(member.key), form.*member.value);
    }
    const QByteArray text = QJsonDocument(answers).toJson();
    QSaveFile file(fileOf(bottlePath));
    // A link would be followed, to wherever a program of the bottle has made it lead.
    const bool isOurs = !bottlePath.isEmpty() && !QFileInfo(file.fileName()).isSymLink();
    if (isOurs && file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return true;
    qWarning().noquote() << "can't write the answers of the export to" << file.fileName()
                         << file.errorString();
    return false;
}

QThreadPool* RememberedAnswers::thread() {
    static QThreadPool pool;
    pool.setMaxThreadCount(1);
    return &pool;
}

void RememberedAnswers::queue(const QString& bottlePath, const ManifestForm& form) {
    changeServiceAsync(
        qApp, [bottlePath, form] { return write(bottlePath, form); }, [](bool) {}, thread());
}
