// Follows one launch by eye: runs the executor without the application around it and prints each signal and
// message with the milliseconds since the process began, one per line:
//   <ms> step|msg <type> <text>      type: 0 error, 1 ordinary, 2 status
//   <ms> windowPopuped | Fixing | runSuccessed | runFailed <canWeFix> <isSuccessed>
#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTimer>
#include <cstdio>
#include <memory>

#include "launch/run/BottleTasks.h"
#include "launch/run/ExeFileExecutor.h"

namespace {

enum Exit { Success = 0, Failure = 1, Offered = 2, Usage = 3, Stopped = 4 };

class Probe : public QObject {
public:
    Probe(const QElapsedTimer& clock, bool autoFix, bool staging)
        : m_clock(clock), m_autoFix(autoFix), m_staging(staging) {}

    void print(const QString& text) const {
        const QByteArray line =
            QString("%1 %2\n").arg(m_clock.elapsed(), 7).arg(QString(text).replace('\n', "\\n")).toUtf8();
        std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
        std::fflush(stdout);
    }

    ExeFileExecutor* create(const QString& file) {
        print("construct");
        m_executor = std::make_unique<ExeFileExecutor>(file, nullptr);
        print("constructed");
        const auto* executor = m_executor.get();
        connect(executor, &ExeFileExecutor::emitStep, this,
                [this](const QString& text, MsgType type) { print(QString("step %1 ").arg(type) + text); });
        connect(executor, &ExeFileExecutor::emitMsg, this,
                [this](const QString& text, MsgType type) { print(QString("msg %1 ").arg(type) + text); });
        connect(executor, &ExeFileExecutor::windowPopuped, this, [this] { print("windowPopuped"); });
        connect(executor, &ExeFileExecutor::Fixing, this, [this] { print("Fixing"); });
        connect(executor, &ExeFileExecutor::runSuccessed, this, [this] { end("runSuccessed", Success); });
        connect(executor, &ExeFileExecutor::runFailed, this, &Probe::onFailed);
        connect(executor, &ExeFileExecutor::stopped, this, [this] { end("stopped", Stopped); });
        connect(executor, &ExeFileExecutor::programsRunning, this, [this](const QStringList& names) {
            print("programsRunning " + names.join(", "));
            m_executor->answerProgramsRunning(true);
        });
        return m_executor.get();
    }

    /// As the user does who closes the banner.
    void stop() {
        m_executor->disconnect(this);
        BottleTasks::killWineServer(m_executor->bottlesName());
        end("stopped", Stopped);
    }

private:
    void onFailed(bool canWeFix, bool isSuccessed) {
        const QString text = QString("runFailed %1 %2").arg(canWeFix).arg(isSuccessed);
        if (!canWeFix)
            end(text, Failure);
        else if (!m_autoFix &&
                 !(m_staging && m_executor->diagnosis().action == RepairAction::SwitchToStaging))
            end(text, Offered);
        else {
            print(text);
            QMetaObject::invokeMethod(m_executor.get(), &ExeFileExecutor::applyFix, Qt::QueuedConnection);
        }
    }

    void end(const QString& text, Exit code) {
        print(text);
        // Not at once: what comes behind a final result is a fault that should show.
        QTimer::singleShot(0, this, [this, code] {
            m_executor.reset();
            QCoreApplication::exit(code);
        });
    }

    QElapsedTimer m_clock;
    bool m_autoFix;
    bool m_staging;
    std::unique_ptr<ExeFileExecutor> m_executor;
};

}  // namespace

int main(int argc, char** argv) {
    QElapsedTimer clock;
    clock.start();
    QApplication application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(
        "Exit status: 0 success, 1 failure, 2 a repair was offered and not taken");
    options.addHelpOption();
    options.addPositionalArgument("FILE", "The Windows program.");
    options.addOption({"auto-fix", "Takes every repair that is offered."});
    options.addOption({"staging", "Takes the offer of another Wine, but no other."});
    options.addOption({"stop-after", "Stops the launch.", "ms"});
    options.process(application);

    const QFileInfo file(options.positionalArguments().value(0));
    Probe probe(clock, options.isSet("auto-fix"), options.isSet("staging"));
    if (!file.isReadable()) {
        probe.print("not readable: " + file.filePath());
        return Usage;
    }
    ExeFileExecutor* executor = probe.create(file.absoluteFilePath());
    if (options.isSet("stop-after"))
        QTimer::singleShot(options.value("stop-after").toInt(), &probe, [&probe] { probe.stop(); });
    QTimer::singleShot(0, executor, &ExeFileExecutor::start);
    const int code = application.exec();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return code;
}
