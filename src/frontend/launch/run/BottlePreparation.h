#pragma once

#include <QFuture>
#include <QObject>

#include "launch/MsgType.h"

class LaunchedFile;

/// Gets the bottle of a file ready: chooses it, and where it does not exist yet fetches its runner and lets
/// the service create it. Owned by an ExeFileExecutor; GUI thread.
///
/// Construction begins the choice in the background. start() ends once, in done(), unless cancel() comes
/// first. A runner that can't be had is replaced by the default one. A creation that the service breaks off
/// is asked for a second time.
class BottlePreparation : public QObject {
    Q_OBJECT
public:
    /// The file must outlive this object.
    BottlePreparation(LaunchedFile* file, QObject* parent);

    /// The chosen bottle. Waits for the choice; empty for a stored program.
    QString bottle();
    void start();
    /// Ends without done(). The service stops fetching the runner, but finishes a bottle.
    void cancel();
    /// The service was asked to create the bottle, and may not have done so yet.
    bool hasAskedForBottle() const { return m_hasAskedForBottle; }

    /// What the service's component signals tell; ignored for all but the runner that is being fetched.
    void onWineInstalled(int success, const QString& kind, const QString& name, const QString& error);
    /// Sizes are bytes.
    void onWineDownload(const QString& kind, const QString& name, uint received, uint total);

Q_SIGNALS:
    void emitMsg(const QString& text, MsgType recordType = MsgLine);
    /// The bottle is as ready as it gets. A creation that failed has a reason for the user.
    void done(const QString& errorText);

private:
    enum class State { Idle, LookingForBottle, ChoosingRunner, FetchingRunner, CreatingBottle, Cancelled };

    void onBottlesListed(const QStringList& bottles);
    void prepare(const QString& runner);
    void fetchRunner();
    void createBottle();
    void requestBottle();
    void onBottlesCreated(const QString& bottle, const QJsonObject& result);
    void onTemplateProgress(const QString& runner, int percent);
    void end(const QString& errorText);

    LaunchedFile* m_file;
    QFuture<QString> m_choice;
    QString m_bottle;
    QString m_runner;
    State m_state = State::Idle;
    int m_creationAttempts = 0;
    bool m_hasAskedForBottle = false;
};
