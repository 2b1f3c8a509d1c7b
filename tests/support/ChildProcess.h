#pragma once

#include <QProcess>
#include <QStringList>
#include <functional>

namespace TestSupport {

/// A child that never outlives the test program: the kernel kills it when the program ends, however it ends,
/// and the destructor ends it politely first (SIGTERM, two seconds, then SIGKILL).
class ChildProcess : public QProcess {
    Q_OBJECT
public:
    explicit ChildProcess(QObject* parent = nullptr);
    ~ChildProcess() override;

    /// Adds "NAME=value" to the environment that the child inherits. Call before start.
    void setVariable(const QString& name, const QString& value);
    /// Ends the child and waits for it. Harmless when it isn't running.
    void stop();
    /// The next line of standard output, trimmed; empty when none came within the limit in ms.
    QString readLineWithin(int timeoutMs = 10000);

protected:
    void setupChildProcess() override;
};

/// How a helper program ended. exitCode is -1 when it did not start, crashed or overran its limit.
struct RunResult {
    int exitCode = -1;
    QString output;
    QString errors;
    bool ok() const { return exitCode == 0; }
};

/// Runs a program to its end, at most timeoutMs. Variables are "NAME=value", put over the own environment.
RunResult runProcess(const QString& program, const QStringList& arguments, const QStringList& variables = {},
                     int timeoutMs = 30000);

/// Turns the event loop until the condition holds; false when the limit in ms ran out first.
bool waitUntil(const std::function<bool()>& condition, int timeoutMs = 10000);

}  // namespace TestSupport
