#pragma once

#include <QCommandLineParser>
#include <QJsonObject>
#include <QObject>
#include <QVector>

class CellarixApplication;

/// One Windows executable found in a directory.
struct ScannedExecutable {
    QString name;
    QString path;
    QString bottle;
    QString uuid;
    bool hasIcon = false;
    QString iconPath;
    QJsonObject peInfo;
};

/// Decides what a start of the program means. Serves the first process's own arguments and those that a
/// second process hands over, so each branch works with an event loop already running. Bad arguments log a
/// warning and never show a dialog.
class CommandLineHandler : public QObject {
    Q_OBJECT
public:
    explicit CommandLineHandler(CellarixApplication* application);

    /// 0 tells main to enter the event loop, any other value ends a first process with status 1. An empty
    /// list means the process's own arguments; only those may print help and leave.
    int handleCommandLine(const QStringList& args);

    /// Whether a start asked for a service without a window, which then waits for the bus.
    bool isService() const { return m_service; }

    /// Whether a start asked for an update of the environment, which leaves nothing to wait for at its end.
    bool isUpdate() const { return m_update; }

    /// For a start that comes while another one shows the banner of the environment: true when it has to be
    /// made again later, of which the user has been told; otherwise it can wait.
    static bool refuseForNow(const QStringList& args);

    /// Lists the executables below a directory. Blocks without a limit.
    QVector<ScannedExecutable> scanExecutables(const QString& directory, const QString& output);

private:
    void parseOwnArguments();
    bool checkClientUpgrade();
    bool checkEnvironment(const QStringList& positional);
    int handleUpdateCommand();
    int handleFixupCommand(const QStringList& positional);
    int handleOpenCommand(const QStringList& positional);
    int handleDebugUrl(const QString& url);
    int handleUrl(const QString& url);

    CellarixApplication* m_application;
    QCommandLineParser m_parser;
    bool m_service = false;
    bool m_update = false;
};
