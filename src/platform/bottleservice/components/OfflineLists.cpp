#include "bottleservice/components/OfflineLists.h"

#include <QFileInfo>
#include <QHash>

#include "bottleservice/components/OfflineArchive.h"
#include "bottleservice/components/OfflineCheck.h"

namespace {

using Checksums = QHash<QString, QByteArray>;  // by file

Reason otherThanBefore(const OfflineList& list, const Checksums& before, const QString& archive) {
    for (auto file = list.files.begin(); file != list.files.end(); ++file) {
        if (before.value(file.key(), file->sha256) != file->sha256)
            return Reason(Reason::OtherChecksum, {file.key(), archive});
    }
    return {};
}

}  // namespace

OfflineLists OfflineLists::read(const QStringList& paths, const Sources& sources,
                                const std::atomic_bool& cancelled) {
    OfflineLists lists;
    Checksums checksums;
    for (const QString& path : paths) {
        if (cancelled)
            break;
        const QString name = QFileInfo(path).fileName();
        OfflineList list;
        Reason failure = OfflineArchive::readList(path, &list);
        if (failure.isEmpty())
            failure = OfflineCheck::conflict(list, sources, name);
        if (failure.isEmpty())
            failure = otherThanBefore(list, checksums, name);
        if (!failure.isEmpty()) {
            lists.bad.insert(path, failure);
            for (const QString& component : list.components.keys())
                lists.lost.insert(component, failure);
            continue;
        }
        lists.good.insert(path, list);
        for (auto file = list.files.begin(); file != list.files.end(); ++file)
            checksums.insert(file.key(), file->sha256);
    }
    return lists;
}

Reason OfflineLists::faults() const {
    Reason all;
    for (const Reason& reason : bad)
        all += reason;
    return all;
}
