#include "bottleservice/requests/DesktopRequests.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>

#include "bottleservice/bottles/Associations.h"
#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/Programs.h"
#include "bottleservice/desktop/AssociationFiles.h"
#include "bottleservice/desktop/DesktopEntry.h"
#include "bottleservice/files/AtomicFile.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/BottleRequests.h"
#include "bottleservice/requests/ProgramRequests.h"
#include "bottleservice/requests/RequestChecks.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"
#include "fenk/system/RegularFile.h"

using Fault = Answer::Fault;

namespace {

const char AssociationsOwner[] = "associations";
const char DefaultIcon[] = "cxb_app_default_icon";
constexpr int DatabaseTimeoutMs = 30000;
constexpr qint64 MaximumExportedBytes = 16 * 1024 * 1024;

QString dataLocation() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

Answer failed(const QString& errorText) {
    qWarning() << errorText;
    return Answer::failure(Fault::Failed, errorText);
}

/// A name for files: keys may contain characters that file names cannot.
QString digest(const QString& key) {
    return QString::fromLatin1(QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Md5).toHex());
}

}  // namespace

DesktopRequests::DesktopRequests(BottleEngine* engine, BottleRequests* bottles, ProgramRequests* programs,
                                 const QString& command, const QString& iconScript, QObject* parent)
    : QObject(parent),
      m_engine(engine),
      m_command(command),
      m_made(engine->dataDir()),
      m_collector(engine->bottles().store(), iconScript) {
    connect(bottles, &BottleRequests::bottleDeleted, this, &DesktopRequests::forgetBottle);
    connect(programs, &ProgramRequests::scanned, this, &DesktopRequests::collectAssociations);
    connect(programs, &ProgramRequests::programDeleted, this,
            [this](const QString& bottle, const QString& id) { m_made.undo(bottle, id); });
    connect(programs, &ProgramRequests::programUpdated, this,
            [this](const QString& bottle, const QString& id) {
                // Entries that the user has removed by hand are not made again.
                QStringList places;
                for (const QString& path : m_made.existing(bottle, id))
                    places += QFileInfo(path).path();
                if (!places.isEmpty())
                    writeEntry(bottle, id, places);
            });
    connect(&m_collector, &AssociationCollector::collected, this,
            [this](const QString& bottle, const QJsonObject& associations) {
                m_engine->enqueue(
                    bottle, [](const Answer&) {},
                    [this, bottle, associations] { return keep(bottle, associations); });
            });
}

void DesktopRequests::recover() {
    m_made.removeUnfinished();
    // An unmounted disk does not mean that the bottles are deleted.
    if (!QDir(m_engine->bottles().store().root()).isReadable() ||
        m_engine->bottles().store().names().isEmpty())
        return;
    for (const QString& bottle : m_made.bottles()) {
        if (BottleName::check(bottle).isEmpty() &&
            m_engine->bottles().store().state(bottle) == BottleStore::State::Missing)
            forgetBottle(bottle);
    }
}

void DesktopRequests::createDesktopEntry(const QString& bottle, const QString& programId,
                                         const Reply& reply) {
    if (!RequestChecks::refuseName(bottle, reply))
        m_engine->enqueue(bottle, reply, [this, bottle, programId] {
            QStringList places{dataLocation() + "/applications"};
            const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
            if (QFileInfo(desktop).isDir() && QDir(desktop) != QDir::home())
                places += desktop;
            return writeEntry(bottle, programId, places);
        });
}

Answer DesktopRequests::writeEntry(const QString& bottle, const QString& programId,
                                   const QStringList& places) {
    Answer failure;
    const auto settings = m_engine->bottles().load(bottle, &failure);
    if (!settings)
        return failure;
    // An id that was written into bottle.yml by hand could be a path.
    if (!settings->hasProgram(programId) || !Programs::isProgramId(programId))
        return RequestChecks::noProgram(bottle, programId);
    const QJsonObject program = settings->program(programId);
    const QString icon = program["icon"].toString();
    const QString file = QString(program["path"].toString()).replace('\\', '/').section('/', -1);
    DesktopEntry entry;
    entry.name = program["name"].toString();
    if (entry.name.trimmed().isEmpty())
        entry.name = file;
    entry.icon = QFileInfo(icon).isAbsolute() && QFileInfo(icon).isFile() ? icon : QString(DefaultIcon);
    entry.command = QStringList{m_command, "lumorawine://" + bottle + '/' + programId};
    // Wine names the windows of a program after its file.
    entry.wmClass = file.toLower();
    const QString name = '/' + MadeFiles::prefixOf(bottle) + programId + ".desktop";
    MadeFiles::Contents files;
    for (const QString& place : places)
        files.insert(QDir::cleanPath(place) + name, entry.toText());
    QString error;
    return m_made.make(bottle, programId, files, true, &error) ? Answer::of() : failed(error);
}

void DesktopRequests::exportFileAssociations(const QString& bottle, const QStringList& keys,
                                             const Reply& reply) {
    if (!RequestChecks::refuseName(bottle, reply))
        m_engine->enqueue(bottle, reply, [this, bottle, keys] { return writeAssociations(bottle, keys); });
}

Answer DesktopRequests::writeAssociations(const QString& bottle, const QStringList& keys) {
    const Answer usable = m_engine->bottles().check(bottle);
    if (!usable.isGood())
        return usable;
    const QJsonObject known = Associations::load(m_engine->bottles().pathOf(bottle));
    if (keys.size() > known.size())
        return Answer::failure(Fault::InvalidArgs, "More associations than the bottle has, or some twice.");
    for (const QString& key : keys) {
        if (!known.contains(key))
            return Answer::failure(Fault::InvalidArgs,
                                   QString("No program of the bottle \"%1\" opens \"%2\".")
                                       .arg(BottleName::shown(bottle), BottleName::shown(key)));
    }
    QString error;
    const QString place = QDir::cleanPath(dataLocation());
    const QString prefix = MadeFiles::prefixOf(bottle);
    MadeFiles::Contents files;
    for (const QString& key : keys)
        files.insert(place + "/applications/" + prefix + digest(key) + ".desktop",
                     AssociationFiles::entry(m_command, bottle, key, known[key].toObject()).toText());
    const QByteArray types = AssociationFiles::mimePackage(known, keys);
    if (!types.isEmpty())
        files.insert(place + "/mime/packages/" + prefix + "types.xml", types);
    const bool isMade = m_made.make(bottle, AssociationsOwner, files, false, &error);
    refreshDatabases();
    if (!isMade || !rememberExported(bottle, keys, &error))
        return failed(error);
    qInfo() << "exported" << keys << "of" << BottleName::shown(bottle);
    return Answer::of();
}

bool DesktopRequests::rememberExported(const QString& bottle, const QStringList& keys, QString* error) {
    const QString path = m_engine->dataDir() + "/exported_associations.json";
    const auto text = Fenk::RegularFile::read(path, MaximumExportedBytes);
    const QJsonDocument document = QJsonDocument::fromJson(text.value_or("{}"));
    if ((!text && QFileInfo::exists(path)) || !document.isObject()) {
        *error = QString("%1 cannot be read or understood; nothing was changed in it.").arg(path);
        return false;
    }
    QJsonObject all = document.object();
    const QJsonObject before = all;
    if (keys.isEmpty())
        all.remove(bottle);
    else
        all.insert(bottle, QJsonArray::fromStringList(keys));
    return all == before || AtomicFile::replace(path, QJsonDocument(all).toJson(), error);
}

Answer DesktopRequests::keep(const QString& bottle, const QJsonObject& associations) {
    const Answer usable = m_engine->bottles().check(bottle);
    const QString path = m_engine->bottles().pathOf(bottle);
    if (!usable.isGood() || associations == Associations::load(path))
        return usable;
    QString error;
    qInfo() << "programs of" << BottleName::shown(bottle) << "open" << associations.keys();
    return AtomicFile::replace(path + Associations::FileName, QJsonDocument(associations).toJson(), &error)
               ? Answer::of()
               : failed(error);
}

void DesktopRequests::forgetBottle(const QString& bottle) {
    QString error;
    if (!rememberExported(bottle, {}, &error))
        qWarning() << error;
    const bool hasTypes = !m_made.existing(bottle, AssociationsOwner).isEmpty();
    m_made.undo(bottle);
    if (hasTypes)
        refreshDatabases();
}

void DesktopRequests::refreshDatabases() {
    const std::pair<const char*, const char*> databases[] = {{"update-mime-database", "/mime"},
                                                             {"update-desktop-database", "/applications"}};
    for (const auto& [tool, place] : databases) {
        const QString program = QStandardPaths::findExecutable(tool);
        if (!QFileInfo(dataLocation() + place).isDir())
            continue;
        if (program.isEmpty()) {
            qInfo() << tool << "is not installed; the desktop may notice the change later";
            continue;
        }
        auto* command =
            new WineCommand(program, {dataLocation() + place}, WineEnvironment::forProcess({}), this);
        connect(command, &WineCommand::finished, this, [command, program](const QString& fault) {
            if (!fault.isEmpty())
                qWarning() << program << fault;
            command->deleteLater();
        });
        command->start(DatabaseTimeoutMs);
    }
}
