#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <initializer_list>
#include <memory>
#include <vector>

#include "fenk/system/OwnedFd.h"

namespace Fenk {

/// Turns Unix signals into a Qt signal of the thread that made it. The handler itself only writes a byte to a
/// pipe, so a Unix signal that comes before the event loop runs is received once it does. One instance a
/// process; its destructor restores the default actions.
class UnixSignals : public QObject {
    Q_OBJECT

public:
    /// What a Unix signal does that comes again: it is received like the first, or it ends the process, for
    /// programs whose event loop may be stuck.
    enum class Repeated { Received, Fatal };

    UnixSignals(std::initializer_list<int> numbers, Repeated repeated, QObject* parent = nullptr);
    ~UnixSignals() override;

    /// The number of the Unix signal that was received last; 0 before the first.
    int lastReceived() const { return m_lastReceived; }

Q_SIGNALS:
    void received();

private:
    void onReadable();

    const std::vector<int> m_numbers;
    OwnedFd m_readEnd;
    OwnedFd m_writeEnd;
    int m_lastReceived = 0;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

}  // namespace Fenk
