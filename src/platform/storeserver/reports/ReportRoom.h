#pragma once

#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace StoreServer {

/// How much of a directory's room is used: by what is there, and by what is being written. Uploads that no
/// report has named make room for others, the oldest first, once they are old enough, and only for bytes that
/// have come. All sizes are those that files take on the disk, in bytes. For any thread.
class ReportRoom {
public:
    static constexpr qint64 BlockBytes = 4096;
    static constexpr qint64 YoungMs = 60 * 60 * 1000;  ///< an upload that is not removed for others
    /// Of one owner there may be so much under way, or an eighth of the room.
    static constexpr qint64 OwnersBytes = 64 << 20;

    /// `remove` deletes an upload by its name; false if it frees nothing. It is called in any thread.
    ReportRoom(qint64 bytes, std::function<bool(const QString& upload)> remove)
        : m_bytes(bytes), m_remove(std::move(remove)) {}

    static qint64 rounded(qint64 bytes) { return (bytes + BlockBytes - 1) / BlockBytes * BlockBytes; }

    /// Room for what is about to be written, for as long as the object lives.
    class Part {
    public:
        Part(ReportRoom& room, qint64 bytes, const std::string& owner, qint64 nowMs)
            : m_room(room), m_bytes(bytes), m_owner(owner), m_nowMs(nowMs) {}
        ~Part();
        Part(const Part&) = delete;
        Part& operator=(const Part&) = delete;

        /// Before so many bytes are written. False if there is no room for them any more.
        bool use(qint64 bytes);
        /// Files of so many bytes stay; with a name if they are an upload that no report has named.
        void keep(qint64 bytes, const QString& upload = {});

    private:
        ReportRoom& m_room;
        qint64 m_bytes;
        qint64 m_usedBytes = 0;
        std::string m_owner;
        qint64 m_nowMs;
    };
    /// Null if there is none, for all or for this owner.
    std::unique_ptr<Part> reserve(qint64 bytes, const std::string& owner, qint64 nowMs);

    /// An upload that is in the directory, was counted, and that no report has named.
    void addUnused(const QString& upload, qint64 bytes, qint64 changedMs);
    /// An upload belongs to a report now.
    void setUsed(const QString& upload);
    /// An upload that was not used is gone.
    void removeUnused(const QString& upload);

    /// Around counting what is in the directory but for what is being written. What comes in between is
    /// added.
    void beginCount();
    void endCount(qint64 bytes);
    /// Whether somebody found no room since the last count: some may have been made by hand.
    bool isCountWanted() const;
    /// What is used, in percent.
    int percent() const;

private:
    struct Unused {
        qint64 bytes;
        qint64 changedMs;
    };
    qint64 used() const { return m_keptBytes + m_writtenBytes; }
    bool canFree(qint64 bytes, qint64 nowMs) const;
    void forget(const QString& upload, bool isFreed);

    const qint64 m_bytes;
    const std::function<bool(const QString&)> m_remove;
    mutable std::mutex m_mutex;  // of all below
    qint64 m_keptBytes = 0;
    qint64 m_addedBytes = 0;  // to the ones that are kept, since counting began
    qint64 m_writtenBytes = 0;
    qint64 m_reservedBytes = 0;  // not written yet
    std::unordered_map<std::string, qint64> m_owners;
    std::map<QString, Unused> m_unused;
    std::multimap<qint64, QString> m_byAge;  // of them
    bool m_isCountWanted = false;
};

}  // namespace StoreServer
