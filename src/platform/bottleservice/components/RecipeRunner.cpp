#include "bottleservice/components/RecipeRunner.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/Archive.h"
#include "bottleservice/components/PrefixFiles.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/settings/DllOverrides.h"
#include "bottleservice/wine/RegistryWriter.h"
#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

using Kind = RecipeStep::Kind;

namespace {

constexpr int InstallerTimeoutMs = 60 * 60 * 1000;
// Exit codes of installers for "done, after a restart" and "a newer version is installed": 3010, 1641 and
// 1638 modulo 256, which is what a process can return.
constexpr int GoodCodes[] = {0, 3010 & 0xff, 1641 & 0xff, 1638 & 0xff};

QString windowsPath(const QString& path) {
    return "Z:" + QDir::toNativeSeparators(path).replace('/', '\\');
}

/// Unpacks the files of a step and copies them into the prefix.
Reason placeFiles(const RecipeStep& step, const QString& archive, const QString& directory,
                  const QString& prefix, QStringList* files, const std::atomic_bool& cancelled) {
    const Reason fault = Archive::extract(archive, step.names, directory, files, cancelled);
    if (!fault.isEmpty())
        return fault;
    QStringList missing = step.names;
    for (const QString& file : qAsConst(*files)) {
        const QString name = QFileInfo(file).fileName();
        for (int i = missing.size() - 1; i >= 0; --i) {
            if (missing[i].compare(name, Qt::CaseInsensitive) == 0)
                missing.removeAt(i);
        }
    }
    if (files->isEmpty())
        return Reason(Reason::NotInArchive, {step.file, step.names.join(", ")});
    if (!missing.isEmpty())
        qWarning() << step.file << "does not hold" << missing;
    return step.kind == Kind::Fonts ? PrefixFiles::putFonts(prefix, *files)
                                    : PrefixFiles::putSystemFiles(prefix, *files, step.only32Bit);
}

Reason reasonOf(const WineCommand& ended, const QString& file, const QString& detail) {
    if (ended.hasTimedOut())
        return Reason(Reason::InstallerSlow, {file});
    if (!ended.hasStarted())
        return Reason(Reason::InstallerNotStarted, {file, detail});
    return ended.exitCode() ? Reason(Reason::InstallerCode, {file, QString::number(*ended.exitCode())})
                            : Reason(Reason::InstallerCrashed, {file});
}

}  // namespace

RecipeRunner::RecipeRunner(const Runner& runner, const QString& bottlePath, const QString& workPath,
                           const QVector<Recipe>& recipes, std::function<QString(const QString&)> fileOf,
                           QObject* parent)
    : QObject(parent),
      m_runner(runner),
      m_bottlePath(bottlePath),
      m_workPath(workPath),
      m_name(recipes.isEmpty() ? QString() : BottleName::shown(recipes.last().name)),
      m_target(RecipeTarget::of(bottlePath, runner.wine)),
      m_fileOf(std::move(fileOf)) {
    for (const Recipe& recipe : recipes) {
        for (const RecipeStep& step : recipe.steps) {
            if (step.fits(m_target))
                m_steps.enqueue(step);
        }
    }
    m_total = m_steps.size();
}

RecipeRunner::~RecipeRunner() {
    *m_cancelled = true;
}

void RecipeRunner::start() {
    if (m_steps.isEmpty()) {
        // The installation was planned for the Wine that the bottle had before.
        QMetaObject::invokeMethod(
            this, [this] { finish(Reason(Reason::NotForThisWine, {m_name})); }, Qt::QueuedConnection);
        return;
    }
    Q_EMIT stepDone(0, m_total);
    next();
}

void RecipeRunner::cancel() {
    *m_cancelled = true;
    if (m_command)
        m_command->kill();
    if (m_writer)
        m_writer->cancel();
}

void RecipeRunner::next() {
    if (m_steps.isEmpty() || *m_cancelled) {
        finish(*m_cancelled ? Reason(Reason::Cancelled) : Reason());
        return;
    }
    carryOut(m_steps.head());
}

void RecipeRunner::carryOut(const RecipeStep& step) {
    switch (step.kind) {
        case Kind::Run:
            run(step);
            break;
        case Kind::Winetricks:
            runWinetricks(step.file);
            break;
        case Kind::Extract:
        case Kind::Fonts:
            unpack(step);
            break;
        case Kind::Registry:
            writeRegistry(step.registry);
            break;
        case Kind::Override:
            addOverrides(step);
            break;
    }
}

void RecipeRunner::run(const RecipeStep& step) {
    if (step.archive.isEmpty()) {
        runProgram(step, step.files().contains(step.file) ? m_fileOf(step.file) : step.file);
        return;
    }
    inDirectory(
        [step, archive = m_fileOf(step.archive), cancelled = m_cancelled](const QString& directory,
                                                                          QStringList* files) {
            const Reason fault = Archive::extract(archive, {step.file}, directory, files, *cancelled);
            return fault.isEmpty() && files->isEmpty()
                       ? Reason(Reason::NotInArchive, {step.archive, step.file})
                       : fault;
        },
        [this, step](const QStringList& files) { runProgram(step, files.first()); });
}

void RecipeRunner::runProgram(const RecipeStep& step, const QString& program) {
    if (!m_target.runs32Bit && PrefixFiles::is32BitProgram(program)) {
        stepEnded(Reason(Reason::Needs32Bit, {step.file}));
        return;
    }
    const QStringList files = step.files();
    QStringList arguments;
    for (const QString& argument : step.arguments)
        arguments += files.contains(argument) ? windowsPath(m_fileOf(argument)) : argument;
    Q_EMIT described(QString("Installing %1").arg(files.join(' ')));
    command(m_runner.wine, QStringList{program} + arguments, files.value(0, step.file),
            [this] { stepEnded({}); });
}

void RecipeRunner::runWinetricks(const QString& verb) {
    Q_EMIT described(QString("Installing %1 with winetricks").arg(verb));
    command(QStandardPaths::findExecutable("winetricks"), {"--unattended", verb}, verb,
            [this] { stepEnded({}); });
}

void RecipeRunner::unpack(const RecipeStep& step) {
    Q_EMIT described(QString("Unpacking %1").arg(step.file));
    inDirectory(
        [step, archive = m_fileOf(step.file), prefix = m_bottlePath, cancelled = m_cancelled](
            const QString& directory, QStringList* files) {
            return placeFiles(step, archive, directory, prefix, files, *cancelled);
        },
        [this, registers = step.registers](const QStringList& files) {
            registerFiles(registers ? files : QStringList());
        });
}

/// Runs work in a worker thread that fills a directory, which exists until the end of the step.
void RecipeRunner::inDirectory(const Work& work, std::function<void(const QStringList& files)> done) {
    m_unpacked = std::make_unique<QTemporaryDir>(m_workPath + "/unpacked-XXXXXX");
    if (!m_unpacked->isValid()) {
        stepEnded(Reason(Reason::CannotWrite, {m_workPath, m_unpacked->errorString()}));
        return;
    }
    const auto files = std::make_shared<QStringList>();
    Background::run(
        this, [work, files, directory = m_unpacked->path()] { return work(directory, files.get()); },
        [this, files, done = std::move(done)](const Reason& fault) {
            if (fault.isEmpty())
                done(*files);
            else
                stepEnded(fault);
        });
}

void RecipeRunner::registerFiles(QStringList files) {
    if (files.isEmpty()) {
        stepEnded({});
        return;
    }
    const QString name = QFileInfo(files.takeFirst()).fileName();
    command(m_runner.wine, {"regsvr32", "/s", name}, name, [this, files] { registerFiles(files); });
}

void RecipeRunner::addOverrides(const RecipeStep& step) {
    RegistryChange registry;
    for (const QString& dll : step.names) {
        m_overrides.insert(dll, step.mode);
        registry = registry.then(DllOverrides::registry(dll, step.mode));
    }
    if (registry.isEmpty())
        stepEnded({});
    else
        writeRegistry(registry);
}

void RecipeRunner::writeRegistry(const RegistryChange& change) {
    m_writer = new RegistryWriter(m_runner, m_bottlePath, change, this);
    connect(m_writer, &RegistryWriter::finished, this, [this](const Reason& reason) {
        std::exchange(m_writer, nullptr)->deleteLater();
        stepEnded(reason);
    });
    m_writer->start();
}

void RecipeRunner::command(const QString& program, const QStringList& arguments, const QString& file,
                           std::function<void()> done) {
    m_command = new WineCommand(program, arguments, environment(), this);
    connect(m_command, &WineCommand::finished, this, [this, file, done](const QString& errorText) {
        WineCommand* ended = std::exchange(m_command, nullptr);
        ended->deleteLater();
        const bool isGood = errorText.isEmpty() ||
                            (ended->exitCode() &&
                             std::count(std::begin(GoodCodes), std::end(GoodCodes), *ended->exitCode()) > 0);
        if (isGood && !*m_cancelled) {
            done();
            return;
        }
        qWarning().noquote() << "output of a failed installer:" << ended->output().right(4000);
        stepEnded(reasonOf(*ended, file, errorText));
    });
    m_command->start(InstallerTimeoutMs);
}

/// Without Wine's questions about Mono and Gecko, which would block a silent installation, and with the
/// native DLLs of earlier steps.
QProcessEnvironment RecipeRunner::environment() const {
    QJsonObject variables = WineEnvironment::forCreation(m_bottlePath);
    QStringList overrides{variables["WINEDLLOVERRIDES"].toString()};
    overrides += DllOverrides::pairs(m_overrides);
    variables.insert("WINEDLLOVERRIDES", overrides.join(';'));
    variables.insert("WINE", m_runner.wine);
    variables.insert("WINESERVER", m_runner.wineserver);
    return WineEnvironment::forProcess(variables);
}

void RecipeRunner::stepEnded(const Reason& reason) {
    m_unpacked.reset();
    if (!reason.isEmpty() || *m_cancelled) {
        finish(*m_cancelled ? Reason(Reason::Cancelled) : reason);
        return;
    }
    m_steps.dequeue();
    Q_EMIT stepDone(m_total - m_steps.size(), m_total);
    QMetaObject::invokeMethod(this, &RecipeRunner::next, Qt::QueuedConnection);
}

void RecipeRunner::finish(const Reason& reason) {
    if (!std::exchange(m_done, true))
        Q_EMIT finished(reason);
}
