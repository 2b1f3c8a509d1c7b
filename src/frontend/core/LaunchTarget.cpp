#include "core/LaunchTarget.h"

#include <QFileInfo>
#include <QUrl>

#include "launch/inspection/ProgramKind.h"

namespace {

const QLatin1String ProgramScheme("lumorawine://");
const QLatin1String FileScheme("file://");

QString canonicalPath(const QString& url) {
    QString path = url;
    if (path.startsWith(FileScheme))
        path.remove(0, FileScheme.size());
    QString canonical = QFileInfo(path).canonicalFilePath();
    // Desktops percent-encode the url of a file.
    if (canonical.isEmpty() && url.startsWith(FileScheme))
        canonical = QFileInfo(QUrl(url).toLocalFile()).canonicalFilePath();
    return canonical;
}

/// By content: screen savers, old tools and self-extractors have many suffixes.
bool isProgram(const QString& path, const QString& suffix) {
    const bool isKnownByName = suffix == QLatin1String("msp") || suffix == QLatin1String("bat");
    return !isKnownByName && ProgramHeader::read(path).isProgram();
}

LaunchTarget fileTarget(const QString& url, const QStringList& executableSuffixes) {
    LaunchTarget target;
    target.path = canonicalPath(url);
    if (target.path.isEmpty()) {
        target.kind = LaunchTarget::Missing;
        return target;
    }
    const QString suffix = QFileInfo(target.path).suffix().toLower();
    if (executableSuffixes.contains(suffix))
        target.kind = LaunchTarget::Executable;
    else if (suffix == QLatin1String("cxb"))
        target.kind = LaunchTarget::PackageFile;
    else
        target.kind = isProgram(target.path, suffix) ? LaunchTarget::Executable : LaunchTarget::OtherFile;
    return target;
}

}  // namespace

LaunchTarget LaunchTarget::fromUrl(const QString& url) {
    if (url.isEmpty())
        return {};
    if (!url.startsWith(ProgramScheme))
        return fileTarget(url, {"exe", "msi"});
    LaunchTarget target;
    const QString rest = url.mid(ProgramScheme.size());
    const int slash = rest.lastIndexOf('/');
    if (slash > 0) {
        target.kind = StoredProgram;
        target.bottle = rest.left(slash);
        target.uuid = rest.mid(slash + 1);
    }
    return target;
}

LaunchTarget LaunchTarget::fromDebugUrl(const QString& url) {
    if (url.isEmpty())
        return {};
    return fileTarget(url, {"exe", "msi", "msp", "bat"});
}

OpenTarget OpenTarget::fromWords(const QStringList& words) {
    OpenTarget target{words.at(0), words.at(1), words.size() > 2 ? words.at(2) : words.at(1)};
    const QString scheme = QUrl(target.file).scheme();
    const bool isLink = !scheme.isEmpty() && scheme != QLatin1String("file");
    if (words.size() == 2)
        target.extension = isLink ? scheme : "." + target.file.split('.').last().toLower();
    const QString path = target.file.startsWith(FileScheme) ? QUrl(target.file).toLocalFile() : target.file;
    // Symbolic links are not resolved: the link's own suffix counts.
    if (QFileInfo::exists(path))
        target.file = QFileInfo(path).absoluteFilePath();
    return target;
}
