#pragma once

#include <QJsonDocument>
#include <QString>
#include <QStringList>
#include <memory>

#include "support/ChildProcess.h"

namespace TestSupport {

/// The installed application as a user starts it: a process of its own, in the environment of the test, with
/// the service agreement accepted. Its messages are collected.
class InstalledApp {
public:
    explicit InstalledApp(const QStringList& arguments = {}, const QStringList& variables = {});

    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    qint64 pid() const { return m_process.processId(); }
    /// The exit status; -1 when it crashed or did not end in time.
    int waitForExit(int timeoutMs = 30000);
    bool waitForLog(const QString& text, int timeoutMs = 30000);
    QString log() const { return m_log; }
    void signal(int number);

    static QString executable();
    /// Writes the settings of someone who has started the program before.
    static void acceptAgreement();

private:
    QString m_log;  ///< outlives the process, which is read until its end
    ChildProcess m_process;
};

/// A built Windows sample ("window", "console", ...), 64 or 32 bit. Empty when its compiler was missing or
/// the Wine of this machine does not run such programs.
QString sample(const QString& name, int bits = 64);
/// The same sample under another file name in a new directory.
QString sampleAs(const QString& name, const QString& directory, const QString& fileName, int bits = 64);

/// The real service's answer to one of its string methods, as text and as JSON.
QString callBottles(const QString& method, const QVariantList& arguments = {});
QJsonDocument bottlesJson(const QString& method, const QVariantList& arguments = {});

QStringList bottleNames();
/// The first bottle whose name begins with that of a program's file; empty when there is none.
QString bottleOf(const QString& program);
/// Enters a program into a bottle.
void addProgram(const QString& bottle, const QString& id, const QString& name, const QString& path,
                const QString& arguments = {});
/// Ends whatever runs in any bottle.
void killAllWineServers();

/// Lets the service install the sample libraries sqlite3 and vcamp140, as parts of the components sqlite3 and
/// vcredist2022, from a directory of this machine. False when they were not built.
bool offerSampleLibraries();

}  // namespace TestSupport
