#include "storeserver/reports/ReportRoom.h"

#include <algorithm>

namespace StoreServer {

ReportRoom::Part::~Part() {
    const std::lock_guard<std::mutex> lock(m_room.m_mutex);
    m_room.m_writtenBytes -= m_usedBytes;
    m_room.m_reservedBytes -= m_bytes - m_usedBytes;
    const auto owner = m_room.m_owners.find(m_owner);
    owner->second -= m_bytes;
    if (owner->second <= 0)
        m_room.m_owners.erase(owner);
}

bool ReportRoom::Part::use(qint64 bytes) {
    const std::lock_guard<std::mutex> lock(m_room.m_mutex);
    bytes = std::min(bytes, m_bytes - m_usedBytes);
    m_usedBytes += bytes;
    m_room.m_writtenBytes += bytes;
    m_room.m_reservedBytes -= bytes;
    while (m_room.used() > m_room.m_bytes) {
        const auto oldest = m_room.m_byAge.begin();
        if (oldest == m_room.m_byAge.end() || m_nowMs - oldest->first < YoungMs)
            return false;
        const QString upload = oldest->second;
        m_room.forget(upload, m_room.m_remove(upload));
    }
    return true;
}

void ReportRoom::Part::keep(qint64 bytes, const QString& upload) {
    {
        const std::lock_guard<std::mutex> lock(m_room.m_mutex);
        m_room.m_keptBytes += bytes;
        m_room.m_addedBytes += bytes;
        m_room.m_writtenBytes -= m_usedBytes;
        m_room.m_reservedBytes += m_usedBytes;  // until this part ends
        m_usedBytes = 0;
    }
    if (!upload.isEmpty())
        m_room.addUnused(upload, bytes, m_nowMs);
}

std::unique_ptr<ReportRoom::Part> ReportRoom::reserve(qint64 bytes, const std::string& owner, qint64 nowMs) {
    bytes = std::max(rounded(bytes), BlockBytes);
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_owners.find(owner);
    if ((found == m_owners.end() ? 0 : found->second) + bytes > std::max(OwnersBytes, m_bytes / 8))
        return nullptr;
    if (!canFree(used() + m_reservedBytes + bytes - m_bytes, nowMs)) {
        m_isCountWanted = true;
        return nullptr;
    }
    m_reservedBytes += bytes;
    m_owners[owner] += bytes;
    return std::make_unique<Part>(*this, bytes, owner, nowMs);
}

bool ReportRoom::canFree(qint64 bytes, qint64 nowMs) const {
    for (auto oldest = m_byAge.begin(); bytes > 0 && oldest != m_byAge.end(); ++oldest) {
        if (nowMs - oldest->first < YoungMs)
            break;
        bytes -= m_unused.at(oldest->second).bytes;
    }
    return bytes <= 0;
}

void ReportRoom::addUnused(const QString& upload, qint64 bytes, qint64 changedMs) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_unused.emplace(upload, Unused{bytes, changedMs}).second)
        m_byAge.emplace(changedMs, upload);
}

void ReportRoom::setUsed(const QString& upload) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    forget(upload, false);
}

void ReportRoom::removeUnused(const QString& upload) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    forget(upload, true);
}

void ReportRoom::forget(const QString& upload, bool isFreed) {
    const auto found = m_unused.find(upload);
    if (found == m_unused.end())
        return;
    if (isFreed)
        m_keptBytes -= found->second.bytes;
    const auto [first, last] = m_byAge.equal_range(found->second.changedMs);
    const auto place =
        std::find_if(first, last, [&upload](const auto& item) { return item.second == upload; });
    if (place != last)
        m_byAge.erase(place);
    m_unused.erase(found);
}

void ReportRoom::beginCount() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_addedBytes = 0;
    m_isCountWanted = false;
}

/// What went in between may have been counted, which errs on the safe side until the next count.
void ReportRoom::endCount(qint64 bytes) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_keptBytes = bytes + m_addedBytes;
}

bool ReportRoom::isCountWanted() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_isCountWanted;
}

int ReportRoom::percent() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return int(used() * 100 / std::max<qint64>(m_bytes, 1));
}

}  // namespace StoreServer
