#include "bottleservice/wine/MenuBuilder.h"

#include "bottleservice/files/AtomicFile.h"
#include "fenk/system/RegularFile.h"

namespace {

constexpr qint64 MaximumBytes = 64 * 1024 * 1024;
const char Section[] = "\\\\RunServices]";
const char Value[] = "\n\"winemenubuilder\"=";

}  // namespace

QString MenuBuilder::removeFromStart(const QString& prefix) {
    const QString path = prefix + "/system.reg";
    QByteArray registry = Fenk::RegularFile::read(path, MaximumBytes).value_or(QByteArray());
    if (registry.isEmpty() || registry.size() > MaximumBytes)
        return QString("Cannot read %1.").arg(path);
    const int section = registry.indexOf(Section);
    const int value = section < 0 ? -1 : registry.indexOf(Value, section);
    // It belongs to another section.
    if (value < 0 || registry.mid(section, value - section).contains("\n["))
        return {};
    const int end = registry.indexOf('\n', value + 1);
    registry.remove(value, (end < 0 ? registry.size() : end) - value);
    QString error;
    return AtomicFile::replace(path, registry, &error, AtomicFile::Safety::Quick) ? QString() : error;
}
