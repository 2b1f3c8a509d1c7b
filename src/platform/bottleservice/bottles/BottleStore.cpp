#include "bottleservice/bottles/BottleStore.h"

#include <QDir>
#include <QFileInfo>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/files/AtomicFile.h"
#include "fenk/system/RegularFile.h"
#include "manifest/YamlText.h"

namespace {

const char SettingsFile[] = "/bottle.yml";

bool isRealDirectory(const QString& path) {
    const QFileInfo info(path);
    return info.isDir() && !info.isSymLink();
}

/// A bottle.yml of any type makes the directory a bottle. If it is a link, a pipe or a directory, the bottle
/// is damaged and can be deleted.
bool hasSettings(const QString& directory) {
    const QFileInfo info(directory + SettingsFile);
    return info.isSymLink() || info.exists();
}

}  // namespace

BottleStore::BottleStore(const QString& dataDir) : m_dataDir(dataDir), m_root(dataDir + "/bottles") {}

QStringList BottleStore::names() const {
    QStringList names = namesIn(m_root, {});
    const QString shared = pathOf(QString(BottleName::PublicPrefix).chopped(1));
    if (isRealDirectory(shared))
        names += namesIn(shared, BottleName::PublicPrefix);
    names.sort();
    return names;
}

QStringList BottleStore::namesIn(const QString& directory, const QString& prefix) const {
    QStringList names;
    const QStringList entries = QDir(directory).entryList(
        QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks, QDir::NoSort);
    for (const QString& entry : entries) {
        if (BottleName::check(prefix + entry).isEmpty() && hasSettings(directory + '/' + entry))
            names += prefix + entry;
    }
    return names;
}

BottleStore::State BottleStore::state(const QString& name) const {
    if (BottleName::isPublic(name)) {
        const QFileInfo shared(pathOf(QString(BottleName::PublicPrefix).chopped(1)));
        if (shared.isSymLink() || (shared.exists() && !shared.isDir()))
            return State::Foreign;
    }
    const QString path = pathOf(name);
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink())
        return State::Missing;
    return isRealDirectory(path) && hasSettings(path) ? State::Present : State::Foreign;
}

QString BottleStore::check(const QString& name) const {
    const QString fault = BottleName::check(name).text();
    if (!fault.isEmpty())
        return fault;
    switch (state(name)) {
        case State::Present:
            return {};
        case State::Missing:
            return QString("There is no bottle \"%1\".").arg(BottleName::shown(name));
        case State::Foreign:
            break;
    }
    return QString("\"%1\" is no bottle: it is a link, or a directory without bottle.yml.")
        .arg(BottleName::shown(name));
}

std::optional<BottleYaml> BottleStore::load(const QString& name, QString* error) const {
    return loadFrom(pathOf(name), BottleName::shown(name), error);
}

std::optional<BottleYaml> BottleStore::loadFrom(const QString& directory, const QString& shownName,
                                                QString* error) {
    const auto text = Fenk::RegularFile::read(directory + SettingsFile, YamlText::MaximumBytes);
    if (!text) {
        *error = QString("The bottle \"%1\" is damaged: its bottle.yml is no file or cannot be read.")
                     .arg(shownName);
        return std::nullopt;
    }
    std::optional<BottleYaml> settings = BottleYaml::parse(*text, error);
    if (!settings)
        *error = QString("bottle.yml of \"%1\" cannot be understood: %2.").arg(shownName, *error);
    return settings;
}

QString BottleStore::runnerOf(const QString& name) const {
    QString error;
    const auto settings = load(name, &error);
    return settings ? settings->runner() : QString();
}

bool BottleStore::save(const QString& name, const BottleYaml& settings, QString* error) const {
    return saveTo(pathOf(name), settings, error);
}

bool BottleStore::saveTo(const QString& directory, const BottleYaml& settings, QString* error) {
    const QByteArray text = settings.toText();
    // Settings that cannot be read back would make the bottle unusable.
    QString fault;
    YamlText::parse(text, &fault);
    if (text.size() > YamlText::MaximumBytes || !fault.isEmpty()) {
        *error = "The settings of the bottle have become too large; nothing was changed.";
        return false;
    }
    return AtomicFile::replace(directory + SettingsFile, text, error);
}
