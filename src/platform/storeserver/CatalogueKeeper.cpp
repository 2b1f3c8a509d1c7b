#include "storeserver/CatalogueKeeper.h"

#include <QDebug>

namespace StoreServer {

namespace {

constexpr int Share = 50;
constexpr int MostFaultsTold = 100;

}  // namespace

CatalogueKeeper::~CatalogueKeeper() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
    }
    m_condition.notify_all();
    if (m_thread.joinable())
        m_thread.join();
}

bool CatalogueKeeper::start() {
    if (m_thread.joinable())
        return true;
    refresh();
    if (!current())
        return false;
    m_thread = std::thread([this] { watch(); });
    return true;
}

void CatalogueKeeper::poke() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isPoked = true;
    }
    m_condition.notify_all();
}

void CatalogueKeeper::watch() {
    std::chrono::steady_clock::duration wait = Interval;
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_isEnding) {
        m_condition.wait_for(lock, wait, [this] { return m_isPoked || m_isEnding; });
        if (m_isEnding)
            break;
        m_isPoked = false;
        lock.unlock();
        const auto begin = std::chrono::steady_clock::now();
        refresh();
        const auto spent = std::chrono::steady_clock::now() - begin;
        wait = std::max<std::chrono::steady_clock::duration>(Interval, spent * Share);
        lock.lock();
    }
}

void CatalogueKeeper::refresh() {
    if (m_votes)
        m_loader.setVotes(m_votes());
    const CatalogueLoader::Result result = m_loader.refresh();
    QStringList faults;
    for (const Fault& fault : result.faults)
        faults += fault.toString();
    int told = 0;
    for (const QString& fault : faults) {
        if (!m_toldFaults.contains(fault) && ++told <= MostFaultsTold)
            qWarning().noquote() << fault;
    }
    if (told > MostFaultsTold)
        qWarning() << "and" << told - MostFaultsTold << "more faults";
    m_toldFaults = faults;
    if (!result.catalogue)
        return;
    std::atomic_store(&m_current, result.catalogue);
    qInfo() << "serving" << result.catalogue->appCount() << "applications in"
            << result.catalogue->categoryCount() << "categories";
}

}  // namespace StoreServer
