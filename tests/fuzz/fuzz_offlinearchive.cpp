// A file of exported components, as anybody may have made it: first the text of its list alone, then the
// whole file, of which nothing may be used that is not as its list says.
#include <cstdint>
#include <cstdlib>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "bottleservice/components/OfflineArchive.h"
#include "bottleservice/components/Sources.h"

namespace {

void checkList(const QByteArray& text) {
    QString fault;
    const auto list = OfflineList::parse(text, &fault);
    if (list.has_value() == !fault.isEmpty())
        std::abort();
    if (!list)
        return;
    for (auto it = list->components.begin(); it != list->components.end(); ++it) {
        for (const QString& file : *it) {
            if (!Sources::isPlainName(it.key()) || !Sources::isPlainName(file) || !list->files.contains(file))
                std::abort();
        }
    }
    const auto again = OfflineList::parse(list->toJson(), &fault);
    if (!again || again->toJson() != list->toJson())
        std::abort();
}

void checkArchive(const QByteArray& content) {
    static const QTemporaryDir place("/dev/shm/fuzz-XXXXXX");
    const QString out = place.path() + "/out", path = place.path() + "/x.tar";
    QDir(out).removeRecursively();
    QFile file(path);
    if (!QDir().mkpath(out) || !file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        std::abort();
    file.close();
    OfflineList list;
    const std::atomic_bool cancelled{false};
    const bool isGood = OfflineArchive::unpack(path, out, &list, cancelled).isEmpty();
    const QDir unpacked(out);
    const QStringList names =
        unpacked.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString& name : names) {
        QFile each(unpacked.filePath(name));
        if (!list.files.contains(name) || !QFileInfo(each).isFile() || !each.open(QIODevice::ReadOnly))
            std::abort();
        const QByteArray sum = QCryptographicHash::hash(each.readAll(), QCryptographicHash::Sha256).toHex();
        if (isGood && sum != list.files[name].sha256)
            std::abort();
    }
    if (isGood && names.size() != list.files.size())
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray content(reinterpret_cast<const char*>(data), int(size));
    checkList(content);
    checkArchive(content);
    return 0;
}
