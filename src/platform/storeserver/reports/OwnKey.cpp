#include "storeserver/reports/OwnKey.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QFile>
#include <QRandomGenerator>
#include <array>
#include <cerrno>

#include "fenk/system/RegularFile.h"
#include "storeserver/reports/PrivateFile.h"
#include "storeserver/reports/ReportError.h"

namespace StoreServer {

namespace {

constexpr int KeyBytes = 32;
constexpr qint64 MostBytes = 1000;

QByteArray newKey() {
    std::array<quint32, KeyBytes / sizeof(quint32)> random = {};
    QRandomGenerator::system()->generate(random.begin(), random.end());
    return QByteArray(reinterpret_cast<const char*>(random.data()), KeyBytes).toHex();
}

}  // namespace

QByteArray ownKey(const QString& file) {
    struct stat facts = {};
    if (::lstat(QFile::encodeName(file).constData(), &facts) != 0 && errno == ENOENT) {
        const QByteArray key = newKey();
        if (const int error = PrivateFile::write(file, key))
            throw ReportError(QString("%1 cannot be written: %2.").arg(file, qt_error_string(error)));
        return key;
    }
    QFile source;
    if (!Fenk::RegularFile::open(source, file, Fenk::RegularFile::Links::Followed))
        throw ReportError(QString("%1 cannot be read.").arg(file));
    const QByteArray key = source.read(MostBytes).trimmed();
    if (key.size() != 2 * KeyBytes || QByteArray::fromHex(key).toHex() != key.toLower())
        throw ReportError(QString("%1 is damaged: restore it, or remove it to begin with a new one, which "
                                  "recognises no device.")
                              .arg(file));
    return key;
}

}  // namespace StoreServer
