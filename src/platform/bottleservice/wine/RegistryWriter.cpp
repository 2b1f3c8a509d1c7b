#include "bottleservice/wine/RegistryWriter.h"

#include <QDebug>

#include "bottleservice/wine/WineCommand.h"
#include "bottleservice/wine/WineEnvironment.h"

namespace {

constexpr int CommandTimeoutMs = 60000;
const char Windows11[] = "win11";

}  // namespace

RegistryWriter::RegistryWriter(const Runner& runner, const QString& bottlePath, const RegistryChange& change,
                               QObject* parent)
    : QObject(parent), m_runner(runner), m_bottlePath(bottlePath), m_change(change) {}

void RegistryWriter::start() {
    if (m_change.windows().isEmpty())
        importEntries();
    else
        setWindows(m_change.windows());
}

void RegistryWriter::cancel() {
    m_cancelled = true;
    if (m_command)
        m_command->kill();
}

void RegistryWriter::setWindows(const QString& code) {
    run({"winecfg.exe", "/v", code}, {}, [this, code](const QString& errorText) {
        if (errorText.isEmpty()) {
            importEntries();
        } else if (code == Windows11 && !m_cancelled) {
            qInfo() << "this Wine does not know" << Windows11 << "by name; telling it the build number";
            m_change = RegistryChange::windows11OverWindows10().then(m_change);
            setWindows("win10");
        } else {
            Q_EMIT finished(Reason(Reason::WindowsNotSet, {code, errorText}));
        }
    });
}

void RegistryWriter::importEntries() {
    if (!m_change.hasEntries()) {
        Q_EMIT finished({});
        return;
    }
    const QByteArray content = m_change.file();
    if (!m_file.open() || m_file.write(content) != content.size() || !m_file.flush()) {
        Q_EMIT finished(QString("Cannot write a file for regedit: %1.").arg(m_file.errorString()));
        return;
    }
    run({"regedit.exe", "/S", "-"}, m_file.fileName(), [this](const QString& errorText) {
        Q_EMIT finished(errorText.isEmpty() ? Reason() : Reason(Reason::RegistryUnchanged, {errorText}));
    });
    // The command has it open; a killed service must not leave it.
    m_file.remove();
}

void RegistryWriter::run(const QStringList& arguments, const QString& input,
                         std::function<void(const QString&)> done) {
    if (m_command)
        m_command->deleteLater();
    // With the user's display, although these programs show nothing: the desktop that the first of them makes
    // lives on for some seconds, and a program that is started meanwhile could not open a window on one
    // without.
    m_command =
        new WineCommand(m_runner.wine, arguments,
                        WineEnvironment::forProcess(WineEnvironment::forCreation(m_bottlePath)), this);
    if (!input.isEmpty())
        m_command->setInputFile(input);
    connect(m_command, &WineCommand::finished, this,
            [this, done = std::move(done)](const QString& errorText) {
                done(m_cancelled ? QString("The change was cancelled.") : errorText);
            });
    m_command->start(CommandTimeoutMs);
}
