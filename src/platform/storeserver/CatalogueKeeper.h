#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "storeserver/catalogue/CatalogueLoader.h"

namespace StoreServer {

/// Has the catalogue that is served, and a thread that looks for changes of the directory and makes the next
/// one. Looking takes at most a fiftieth of the time.
class CatalogueKeeper {
public:
    static constexpr std::chrono::milliseconds Interval{2000};

    /// Throws SqlError if there is no room for temporary files.
    CatalogueKeeper(const QString& directory, int readers) : m_loader(directory, readers) {}
    ~CatalogueKeeper();

    /// Asked at every look, in the keeper's thread; before start().
    void setVotes(std::function<VotesByName()> votes) { m_votes = std::move(votes); }

    /// Makes the first catalogue and starts the thread. False, after logging, if there is nothing to serve.
    /// Does nothing if it has started already.
    bool start();
    /// Looks now.
    void poke();
    /// Of any thread.
    std::shared_ptr<const Catalogue> current() const { return std::atomic_load(&m_current); }

private:
    void watch();
    void refresh();

    CatalogueLoader m_loader;
    std::function<VotesByName()> m_votes;
    std::shared_ptr<const Catalogue> m_current;
    QStringList m_toldFaults;
    std::mutex m_mutex;
    std::condition_variable m_condition;
    bool m_isPoked = false;
    bool m_isEnding = false;
    std::thread m_thread;
};

}  // namespace StoreServer
