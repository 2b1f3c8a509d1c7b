#pragma once

#include <QDateTime>
#include <QObject>
#include <QTimer>

/// Lets the service make programs of the shortcuts that appear in a bottle during a launch, since Wine's own
/// maker of menu entries is switched off in the bottles. Counts shortcuts from its construction on. Owned by
/// an ExeFileExecutor; GUI thread. A failure is logged and ends like a success.
class LinkCollector : public QObject {
    Q_OBJECT
public:
    explicit LinkCollector(QObject* parent);

    /// Asks and forgets.
    void collectInBackground(const QString& bottle);
    /// Ends once, in done() after at most 10 s, unless cancel() comes first.
    void collect(const QString& bottle);
    void cancel() { m_limit.stop(); }

Q_SIGNALS:
    void done();

private:
    QDateTime m_since = QDateTime::currentDateTime();
    QString m_bottle;
    QTimer m_limit;     ///< runs while an answer is awaited
    int m_request = 0;  ///< so that a late answer to one request does not end another
};
