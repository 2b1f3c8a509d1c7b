#include "storeserver/data/StoreDirectory.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "fenk/system/RegularFile.h"
#include "manifest/ManifestReader.h"

namespace StoreServer {

namespace {

constexpr qint64 MaximumTextBytes = 2 * 1024 * 1024;
const QString CategoriesFile = "categories.yml";
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

}  // namespace

std::optional<QStringList> StoreDirectory::appInfoIds(Faults& faults) const {
    const QDir apps(m_path + '/' + AppsDirectory);
    if (!apps.isReadable()) {
        faults.append({AppsDirectory, "The directory is missing or cannot be read."});
        return std::nullopt;
    }
    QStringList names;
    for (const QString& name : apps.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        if (isAppInfoId(name))
            names.append(name);
        else
            faults.append(
                {AppsDirectory + '/' + name,
                 "The name of an application's directory has 1 to 64 of the characters a-z, 0-9, '.' "
                 "and '-', and starts with one of the first two kinds."});
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

QByteArray StoreDirectory::signature(const QString& appInfoId) const {
    QByteArray signature;
    for (const char* file : {"store.yml", "manifest.yml", "icon.png", "icon.svg"})
        addFacts(signature, m_path + '/' + AppsDirectory + '/' + appInfoId + '/' + file);
    return signature;
}

}  // namespace StoreServer
