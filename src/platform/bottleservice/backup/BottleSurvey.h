#pragma once

#include <sys/stat.h>

#include <QString>
#include <atomic>
#include <vector>

#include "bottleservice/backup/BackupList.h"
#include "bottleservice/result/Reason.h"

/// What a backup of a bottle has to hold, found by one walk that follows no link, and whether the bottle has
/// changed since. Blocks; for worker threads.
class BottleSurvey {
public:
    struct Place {
        QString bottlePath;
        QString templatePath;        ///< empty when the bottle is no copy of one
        QStringList ownDirectories;  ///< links to files below these are Wine's or a component's
        bool isCopy = false;         ///< of a template, which may be missing
    };

    explicit BottleSurvey(const Place& place) : m_place(place) {}

    /// Fills the entries, Wine's files, the standard links and what is left out. Wine's files are those that
    /// equal the template's, or link to the same file as there.
    Reason take(const std::atomic_bool& cancelled);

    BackupList list;

    /// Whether every file and directory is still as take() has found it.
    bool isUnchanged() const;

private:
    struct Stamp {
        QByteArray path;
        timespec modified;
        timespec changed;
        qint64 size;
    };
    struct Found {
        QByteArray path;
        struct stat status;
    };

    void findOwnDirectories();
    Reason walk(const QByteArray& directory, const std::atomic_bool& cancelled);
    /// Leaves out the links that a restoration would refuse.
    void checkLinks();
    Reason addLink(const QByteArray& path);
    void addFile(const QByteArray& path, const struct stat& status);
    void leaveOut(const QByteArray& path, const QByteArray& target);
    void stamp(const QByteArray& path, const struct stat& status);
    bool isInTemplate(const QByteArray& path, const QByteArray& target) const;
    bool isMadeByWine(const QByteArray& path, const QByteArray& target) const;
    QByteArray pathOf(const QByteArray& path) const;

    Place m_place;
    QStringList m_ownDirectories;  ///< canonical, also those of the bottle's package
    std::vector<Stamp> m_stamps;
    dev_t m_device = 0;
};
