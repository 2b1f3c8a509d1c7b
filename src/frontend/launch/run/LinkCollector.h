#pragma once

#include <QDateTime>
#include <QObject>
#include <QTimer>

class LaunchBottle;
struct BusResult;

/// Lets the service make programs of the shortcuts that appear in a bottle during a launch, since Wine's own
/// maker of menu entries is switched off in the bottles. Counts shortcuts from its construction on. Owned by
/// an ExeFileExecutor; GUI thread. A failure is logged and ends like a success.
class LinkCollector : public QObject {
    Q_OBJECT
public:
    /// The bottle must outlive this object. It is marked as changed when programs were added.
    LinkCollector(LaunchBottle* bottle, QObject* parent);

    /// Asks, and ends without done().
    void collectInBackground();
    /// Ends once, in done() after at most 10 s, unless cancel() comes first.
    void collect();
    void cancel() { m_limit.stop(); }

Q_SIGNALS:
    void done();

private:
    void onAnswer(const BusResult& answer);

    LaunchBottle* m_bottle;
    QDateTime m_since = QDateTime::currentDateTime();
    QTimer m_limit;     ///< runs while an answer is awaited
    int m_request = 0;  ///< so that a late answer to one request does not end another
};
