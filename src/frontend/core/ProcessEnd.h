#pragma once

#include <QObject>
#include <functional>
#include <optional>

#include "core/LeaveRule.h"

class QTimer;

/// Ends the process when nothing is left to wait for, as LeaveRule says. A process that has no window and
/// only waits for pending work is leaving: it quits when the work is done or has taken two minutes, unless
/// stay() comes before. Owned by the application object, which collects the facts; GUI thread.
class ProcessEnd : public QObject {
    Q_OBJECT
public:
    /// `facts` collects all facts but isOverdue.
    ProcessEnd(std::function<LeaveRule::Facts()> facts, QObject* parent);

    LeaveRule::Verdict verdict(LeaveRule::Ended what) const;

    /// Quits now or later if nothing is left after the end of this.
    void leaveIfPossible(LeaveRule::Ended what);
    /// The same when the toolkit is about to quit by itself, since the last window was closed.
    void onLastWindowClosed();
    void onWorkEnded();
    /// A window is shown or a start has come: a process that is leaving stays.
    void stay();

private:
    void leaveLater(LeaveRule::Ended what);
    void onTimeout();

    std::function<LeaveRule::Facts()> m_facts;
    std::optional<LeaveRule::Ended> m_leaving;  ///< set while the process waits for pending work only
    QTimer* m_limit;
};
