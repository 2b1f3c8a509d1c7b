#include "bottleservice/backup/BackupPath.h"

#include <QList>
#include <algorithm>

namespace BackupPath {

namespace {

constexpr int MaximumTargetBytes = 4095;

bool isPart(const QByteArray& part) {
    return !part.isEmpty() && part != "." && part != ".." && part.size() <= MaximumPartBytes &&
           !part.contains('\0');
}

}  // namespace

bool isInside(const QByteArray& path) {
    if (path.isEmpty() || path.size() > MaximumBytes || path.count('/') >= MaximumDepth)
        return false;
    const QList<QByteArray> parts = path.split('/');
    return std::all_of(parts.begin(), parts.end(), isPart);
}

bool staysInside(const QByteArray& path, const QByteArray& target) {
    if (target.isEmpty() || target.startsWith('/') || target.size() > MaximumTargetBytes ||
        target.contains('\0'))
        return false;
    int depth = path.count('/');
    bool hasName = false;
    for (const QByteArray& part : target.split('/')) {
        if (part == ".." && (hasName || --depth < 0))
            return false;
        hasName = hasName || (part != ".." && part != "." && !part.isEmpty());
    }
    return true;
}

bool isPassedOver(const QByteArray& path) {
    const QByteArray lower = path.toLower();
    return lower == "launch.json" || lower == "wineserver" || lower == "logs" || lower.startsWith("logs/") ||
           (lower.startsWith('.') && lower != ".update-timestamp");
}

bool isStandardLink(const QByteArray& path) {
    return path.startsWith("dosdevices/") || path.startsWith("drive_c/users/");
}

bool isWinePlace(const QByteArray& path) {
    return path.startsWith("drive_c/") && !path.startsWith("drive_c/users/");
}

QByteArray parentOf(const QByteArray& path) {
    return path.left(std::max(path.lastIndexOf('/'), 0));
}

QString folded(const QByteArray& path) {
    return toText(path).toCaseFolded();
}

QString toText(const QByteArray& path) {
    const QString text = QString::fromUtf8(path);
    if (text.toUtf8() == path)
        return QString(text).replace('%', "%25");
    return QString::fromLatin1(path.toPercentEncoding(" /!$&'()+,;=@[]{}#"));
}

QByteArray fromText(const QString& text) {
    return QByteArray::fromPercentEncoding(text.toUtf8());
}

}  // namespace BackupPath
