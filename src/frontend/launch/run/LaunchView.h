#pragma once

#include <QObject>
#include <functional>

#include "backend/ProgramRef.h"
#include "launch/MsgType.h"

class ExeFileExecutor;
class LogsWidget;
class QIcon;
class QJsonObject;
class WineExeLaunchBanner;

/// What the user sees of one launch: its banner, its log and the dialogs over the banner. Owned by the
/// launch; GUI thread. Home directories are taken out of the lines of the log, not of the banner's.
class LaunchView : public QObject {
    Q_OBJECT
public:
    /// Takes the banner over; makes an ordinary one when there is none.
    explicit LaunchView(QObject* parent, WineExeLaunchBanner* banner = nullptr);
    ~LaunchView() override;

    WineExeLaunchBanner* banner() const { return m_banner; }

    /// A null icon stands for a program without one.
    void setProgram(const QString& name, const QIcon& icon);
    void raiseBanner();
    /// Raises the banner and runs the event loop until it has been painted, 100 ms at most: what a launch
    /// does next reads the file and asks the service, and does not let the banner paint.
    void showBanner();
    /// Shows what the executor reports, and its questions.
    void follow(ExeFileExecutor* executor);

    void addLine(const QString& text);
    void addErrorLine(const QString& text);
    /// The newest lines of the log, oldest first.
    QStringList lastLines(int count) const;
    /// Shows the log in a dialog and returns when that is closed. `report` makes the text that the user can
    /// copy there.
    void showLog(const std::function<QString()>& report);
    /// Asks for feedback on the program and returns when that has been given or not: the rating, 0 for none.
    /// This object may be gone by then.
    int askFeedback(const ProgramRef& program, const QJsonObject& versionBlock);

private:
    void onStep(const QString& text, MsgType type);
    void onMessage(const QString& text, MsgType type);
    void askToClosePrograms(ExeFileExecutor* executor, const QStringList& names);

    WineExeLaunchBanner* m_banner;
    LogsWidget* m_log;
    QString m_appName;
};
