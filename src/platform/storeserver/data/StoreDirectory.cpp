#include "storeserver/data/StoreDirectory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <memory>

#include "fenk/system/RegularFile.h"
#include "manifest/ManifestReader.h"

namespace StoreServer {

namespace {

constexpr qint64 MaximumTextBytes = 2 * 1024 * 1024;
const QString CategoriesFile = "categories.yml";
const QString IssueTypesFile = "issue-types.yml";
const QString AppsDirectory = "apps";

void addFacts(QByteArray& signature, const QString& path) {
    struct stat facts = {};
    if (::stat(QFile::encodeName(path).constData(), &facts) != 0) {
        signature.append('-');
        return;
    }
    const qint64 numbers[] = {qint64(facts.st_ino),  facts.st_size,        facts.st_mtim.tv_sec,
                              facts.st_mtim.tv_nsec, facts.st_ctim.tv_sec, facts.st_ctim.tv_nsec};
    signature.append(reinterpret_cast<const char*>(numbers), sizeof numbers);
}

struct StreamCloser {
    void operator()(DIR* stream) const { ::closedir(stream); }
};

struct Listing {
    QStringList directories;  ///< and links to some
    QStringList strayLinks;   ///< whose target is missing or no directory
    int error = 0;            ///< an errno, with which the names are not all there
};

/// Names that start with a point are left out. QDir says nothing of an error and returns no names then.
Listing listed(const QString& path) {
    Listing listing;
    const std::unique_ptr<DIR, StreamCloser> stream(::opendir(QFile::encodeName(path).constData()));
    if (!stream)
        listing.error = errno;
    while (listing.error == 0) {
        errno = 0;
        const dirent* entry = ::readdir(stream.get());
        if (!entry) {
            listing.error = errno;
            break;
        }
        if (entry->d_name[0] == '.')
            continue;
        const int directory = ::dirfd(stream.get());
        struct stat facts = {};
        if (::fstatat(directory, entry->d_name, &facts, 0) == 0 && S_ISDIR(facts.st_mode))
            listing.directories += QFile::decodeName(entry->d_name);
        else if (::fstatat(directory, entry->d_name, &facts, AT_SYMLINK_NOFOLLOW) != 0)
            listing.error = errno == ENOENT ? 0 : errno;  // it may just have been removed
        else if (S_ISLNK(facts.st_mode))
            listing.strayLinks += QFile::decodeName(entry->d_name);
    }
    return listing;
}

}  // namespace

std::optional<QStringList> StoreDirectory::appInfoIds(Faults& faults) const {
    const Listing apps = listed(m_path + '/' + AppsDirectory);
    if (apps.error != 0) {
        faults.append({AppsDirectory,
                       "The directory is missing or cannot be read: " + qt_error_string(apps.error) + '.'});
        return std::nullopt;
    }
    for (const QString& name : apps.strayLinks)
        faults.append({AppsDirectory + '/' + name, "The link leads to no directory."});
    QStringList all = apps.directories + apps.strayLinks;
    all.sort();
    QStringList names;
    for (const QString& name : all) {
        if (isAppInfoId(name))
            names.append(name);
        else
            faults.append(
                {AppsDirectory + '/' + name,
                 "The name of an application's directory has 1 to 64 of the characters a-z, 0-9, '.' "
                 "and '-', starts with one of the first two kinds, and is not a number."});
    }
    return names;
}

std::optional<QByteArray> StoreDirectory::read(const QString& file, qint64 maximum, Faults& faults) const {
    QFile source;
    if (!Fenk::RegularFile::open(source, m_path + '/' + file, Fenk::RegularFile::Links::Followed)) {
        faults.append({file, "The file is missing or cannot be read."});
        return std::nullopt;
    }
    QByteArray content = source.read(maximum + 1);
    if (source.error() != QFileDevice::NoError || content.size() > maximum) {
        faults.append({file, content.size() > maximum
                                 ? QString("The file is larger than %1 bytes.").arg(maximum)
                                 : source.errorString() + '.'});
        return std::nullopt;
    }
    return content;
}

std::optional<QList<CategoryRecord>> StoreDirectory::categories(Faults& faults) const {
    const int before = faults.size();
    const std::optional<QByteArray> text = read(CategoriesFile, MaximumTextBytes, faults);
    if (!text)
        return std::nullopt;
    QList<CategoryRecord> records = readCategories(*text, CategoriesFile, faults);
    return faults.size() > before ? std::nullopt : std::make_optional(records);
}

std::optional<QList<IssueTypeRecord>> StoreDirectory::issueTypes(Faults& faults) const {
    const QFileInfo file(m_path + '/' + IssueTypesFile);
    if (!file.exists() && !file.isSymLink())
        return standardIssueTypes();
    const int before = faults.size();
    const std::optional<QByteArray> text = read(IssueTypesFile, MaximumTextBytes, faults);
    if (!text)
        return std::nullopt;
    QList<IssueTypeRecord> records = readIssueTypes(*text, IssueTypesFile, faults);
    return faults.size() > before ? std::nullopt : std::make_optional(records);
}

IconFile StoreDirectory::icon(const QString& directory, Faults& faults) const {
    const QString png = directory + "icon.png";
    const QString svg = directory + "icon.svg";
    const bool hasPng = QFileInfo::exists(m_path + '/' + png);
    const bool hasSvg = QFileInfo::exists(m_path + '/' + svg);
    if (hasPng && hasSvg)
        faults.append({svg, "There is an icon.png as well; an application has one icon."});
    if (hasPng == hasSvg)
        return {};
    const QString file = hasPng ? png : svg;
    const std::optional<QByteArray> data = read(file, MaximumIconBytes, faults);
    if (!data)
        return {};
    IconFile icon{hasPng ? IconFile::Kind::Png : IconFile::Kind::Svg, *data};
    const QString sentence = iconFault(icon.kind, icon.data);
    if (!sentence.isEmpty())
        faults.append({file, sentence});
    return icon;
}

std::optional<AppEntry> StoreDirectory::app(const QString& appInfoId, Faults& faults) const {
    const int before = faults.size();
    const QString directory = AppsDirectory + '/' + appInfoId + '/';
    const QString manifestFile = directory + "manifest.yml";
    AppEntry entry;
    if (const auto text = read(directory + "store.yml", MaximumTextBytes, faults))
        entry.record = readApp(*text, appInfoId, directory + "store.yml", faults);
    if (const auto text = read(manifestFile, MaximumTextBytes, faults)) {
        entry.manifest = *text;
        const QString sentence = ManifestReader::read(*text).error;
        if (!sentence.isEmpty())
            faults.append({manifestFile, sentence});
    }
    entry.icon = icon(directory, faults);
    return faults.size() > before ? std::nullopt : std::make_optional(entry);
}

QByteArray StoreDirectory::categoriesSignature() const {
    QByteArray signature;
    addFacts(signature, m_path + '/' + CategoriesFile);
    return signature;
}

QByteArray StoreDirectory::issueTypesSignature() const {
    QByteArray signature;
    addFacts(signature, m_path + '/' + IssueTypesFile);
    return signature;
}

QByteArray StoreDirectory::signature(const QString& appInfoId) const {
    QByteArray signature;
    for (const char* file : {"store.yml", "manifest.yml", "icon.png", "icon.svg"})
        addFacts(signature, m_path + '/' + AppsDirectory + '/' + appInfoId + '/' + file);
    return signature;
}

}  // namespace StoreServer
