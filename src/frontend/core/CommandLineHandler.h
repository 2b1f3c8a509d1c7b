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

/// Decides what a start of the program does. Handles the first process's own arguments and those that a
/// second process hands over, when the event loop is already running. Owned by the application object; GUI
/// thread. Bad arguments are logged as a warning and never show a dialog.
class CommandLineHandler : public QObject {
    Q_OBJECT
public:
    explicit CommandLineHandler(CellarixApplication* application);

    /// 0 tells main to enter the event loop, any other value ends a first process with status 1. An empty
    /// list means the process's own arguments; only those may print help and leave.
    int handleCommandLine(const QStringList& args);

    /// Whether a start asked for a service without a window, which waits for calls from the bus.
    bool isService() const { return m_service; }

    /// Whether a start asked for an update of the environment; nothing is left to wait for after that.
    bool isUpdate() const { return m_update; }

    /// For a start that comes while another is handled. True when it is refused since the environment is
    /// being set up; the user has been told to start again later. Otherwise it can be queued.
    static bool refuseForNow(const QStringList& args);

    /// Lists the executables below a directory. Blocks without a time limit; a failure is logged and returns
    /// nothing.
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
