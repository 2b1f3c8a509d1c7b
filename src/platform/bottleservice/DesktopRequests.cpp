#include "bottleservice/DesktopRequests.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>
#include <QTimer>

#include "bottleservice/BottleEngine.h"
#include "bottleservice/ProgramRequests.h"
#include "bottleservice/bottles/Associations.h"
#include "bottleservice/bottles/AtomicFile.h"
#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/ProgramIcon.h"
#include "bottleservice/bottles/WindowsPath.h"
#include "bottleservice/desktop/AssociationFiles.h"
#include "bottleservice/desktop/DesktopEntry.h"
#include "bottleservice/jobs/WorkerJob.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

using Fault = Answer::Fault;

namespace {

const char AssociationsOwner[] = "associations";
const char DefaultIcon[] = "cxb_app_default_icon";
constexpr int RegistryWrittenMs = 35000;  // Wine writes its registry every half minute
constexpr int DatabaseTimeoutMs = 30000;
constexpr qint64 MaximumExportedBytes = 16 * 1024 * 1024;

QString dataLocation() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

Answer failed(const QString& sentence) {
    qWarning() << sentence;
    return Answer::failure(Fault::Failed, sentence);
}

/// For file names: a key may hold signs that they cannot.
QString digest(const QString& key) {
    return QString::fromLatin1(QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Md5).toHex());
}

}  // namespace

DesktopRequests::DesktopRequests(BottleEngine* engine, ProgramRequests* programs, const QString& command,
                                 const QString& iconScript, QObject* parent)
    : QObject(parent),
      m_engine(engine),
      m_command(command),
      m_iconScript(iconScript),
      m_made(engine->dataDir()) {
    connect(engine, &BottleEngine::bottleDeleted, this, &DesktopRequests::forgetBottle);
    connect(programs, &ProgramRequests::scanned, this, &DesktopRequests::collectAssociations);
    connect(programs, &ProgramRequests::programDeleted, this,
            [this](const QString& bottle, const QString& id) { m_made.undo(bottle, id); });
    connect(programs, &ProgramRequests::programUpdated, this,
            [this](const QString& bottle, const QString& id) {
                if (m_made.has(bottle, id))
                    writeEntry(bottle, id);
            });
}

void DesktopRequests::recover() {
    for (const QString& bottle : m_made.bottles()) {
        if (BottleName::check(bottle).isEmpty() &&
            m_engine->store().state(bottle) == BottleStore::State::Missing)
            forgetBottle(bottle);
    }
}

void DesktopRequests::createDesktopEntry(const QString& bottle, const QString& programId,
                                         const Reply& reply) {
    if (!m_engine->refuse(bottle, reply))
        m_engine->enqueue(bottle, reply, [this, bottle, programId] { return writeEntry(bottle, programId); });
}

Answer DesktopRequests::writeEntry(const QString& bottle, const QString& programId) {
    Answer failure;
    const auto settings = m_engine->loaded(bottle, &failure);
    if (!settings)
        return failure;
    if (!settings->hasProgram(programId))
        return BottleEngine::noProgram(bottle, programId);
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
    const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    QStringList places{dataLocation() + "/applications"};
    if (QFileInfo(desktop).isDir() && QDir(desktop) != QDir::home())
        places += desktop;
    for (const QString& place : qAsConst(places)) {
        QString error;
        if (!m_made.make(bottle, programId, place + name, entry.toText(), true, &error))
            return failed(error);
    }
    return Answer::of();
}

void DesktopRequests::exportFileAssociations(const QString& bottle, const QStringList& keys,
                                             const Reply& reply) {
    if (!m_engine->refuse(bottle, reply))
        m_engine->enqueue(bottle, reply, [this, bottle, keys] { return writeAssociations(bottle, keys); });
}

Answer DesktopRequests::writeAssociations(const QString& bottle, const QStringList& keys) {
    const Answer usable = m_engine->checked(bottle);
    if (!usable.isGood())
        return usable;
    const QJsonObject known = Associations::load(m_engine->store().pathOf(bottle));
    for (const QString& key : keys) {
        if (!known.contains(key))
            return Answer::failure(Fault::InvalidArgs,
                                   QString("No program of the bottle \"%1\" opens \"%2\".")
                                       .arg(BottleName::shown(bottle), BottleName::shown(key)));
    }
    QString error;
    if (!rememberExported(bottle, keys, &error))
        return failed(error);
    m_made.undo(bottle, AssociationsOwner);
    const QString prefix = MadeFiles::prefixOf(bottle);
    const auto make = [&](const QString& path, const QByteArray& text) {
        return m_made.make(bottle, AssociationsOwner, dataLocation() + path, text, false, &error);
    };
    const QByteArray types = AssociationFiles::mimePackage(known, keys);
    bool good = types.isEmpty() || make("/mime/packages/" + prefix + "types.xml", types);
    for (const QString& key : keys) {
        const DesktopEntry entry = AssociationFiles::entry(m_command, bottle, key, known[key].toObject());
        good = good && make("/applications/" + prefix + digest(key) + ".desktop", entry.toText());
    }
    refreshDatabases();
    qInfo() << "exported" << keys << "of" << BottleName::shown(bottle);
    return good ? Answer::of() : failed(error);
}

bool DesktopRequests::rememberExported(const QString& bottle, const QStringList& keys, QString* error) {
    const QString path = m_engine->dataDir() + "/exported_associations.json";
    QFile file(path);
    QJsonObject all;
    if (file.open(QIODevice::ReadOnly))
        all = QJsonDocument::fromJson(file.read(MaximumExportedBytes)).object();
    const QJsonObject before = all;
    if (keys.isEmpty())
        all.remove(bottle);
    else
        all.insert(bottle, QJsonArray::fromStringList(keys));
    return all == before || AtomicFile::replace(path, QJsonDocument(all).toJson(), error);
}

void DesktopRequests::collectAssociations(const QString& bottle) {
    collectNow(bottle);
    QTimer::singleShot(RegistryWrittenMs, this, [this, bottle] { collectNow(bottle); });
}

void DesktopRequests::collectNow(const QString& bottle) {
    const auto work = [this, bottle, script = m_iconScript, store = m_engine->store()](
                          const std::atomic_bool& cancelled) -> WorkerJob::Conclusion {
        QJsonObject found;
        const QString path = store.pathOf(bottle);
        if (store.check(bottle).isEmpty())
            found = Associations::collect(Associations::classesOf(path));
        for (auto it = found.begin(); it != found.end() && !cancelled; ++it) {
            QJsonObject entry = it.value().toObject();
            const QString source = entry["icon"].toString().section(',', 0, 0).remove('"');
            entry["icon"] = ProgramIcon::extract(script, path,
                                                 ProgramIcon::idFor(source + entry["executable"].toString()),
                                                 {WindowsPath::toUnix(path, source),
                                                  WindowsPath::toUnix(path, entry["executable"].toString())},
                                                 cancelled);
            it.value() = entry;
        }
        return [this, bottle, found] { return keep(bottle, found); };
    };
    m_engine->enqueue(bottle, std::make_unique<WorkerJob>(work, [](const Answer&) {}));
}

Answer DesktopRequests::keep(const QString& bottle, const QJsonObject& associations) {
    const Answer usable = m_engine->checked(bottle);
    const QString path = m_engine->store().pathOf(bottle);
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
    if (m_made.has(bottle, AssociationsOwner)) {
        m_made.undo(bottle, AssociationsOwner);
        refreshDatabases();
    }
    m_made.undo(bottle);
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
