#pragma once

#include <QObject>
#include <QVector>
#include <atomic>
#include <memory>

#include "backend/OwnThread.h"
#include "shell/configuration/hints/HintRules.h"

/// Finds out what may be tried after a debugging run: reads the program's log and inspects the program in the
/// background, up to 30 s. One search at a time; a new one replaces the one under way, which goes no further
/// than its next step. Waits for nothing. GUI thread.
class HintSearch : public QObject {
    Q_OBJECT
public:
    struct Request {
        QString bottle;
        QString bottlePath;
        QString programPath;  ///< as in the program's record; may be empty
        QString logPath;
        HintFacts shown;  ///< what the window knows: runner, DXVK, translators, launch result
        /// After a run of this window. Only then a broken Steam runtime is ended: an old log says nothing
        /// about the programs that run now.
        bool isAfterRun = false;
    };

    explicit HintSearch(QObject* parent = nullptr);
    ~HintSearch() override;

    void start(const Request& request);
    /// found() does not come for the search under way.
    void cancel();
    bool isUnderWay() const { return m_isUnderWay; }

Q_SIGNALS:
    /// isUnderWay() has changed.
    void changed();
    /// The end of a search. Empty when there is nothing to try.
    void found(const QVector<Hint>& hints);

private:
    void askForComponents(int number, const Request& request, const HintFacts& facts);
    void endSteamRuntime(int number, HintFacts facts);
    void finish(int number, const HintFacts& facts);
    bool isCurrent(int number) const { return m_isUnderWay && number == m_number; }
    void setUnderWay(bool underWay);

    int m_number = 0;
    bool m_isUnderWay = false;
    const std::shared_ptr<std::atomic<int>> m_wanted;  ///< the number of the search that goes on
    OwnThread m_thread;
};
