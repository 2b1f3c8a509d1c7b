#pragma once

#include <QStringList>
#include <atomic>
#include <memory>

#include "bottleservice/backup/BackupFile.h"
#include "bottleservice/result/Reason.h"
#include "bottleservice/wine/PeFile.h"

/// A portable program as the user has it: a folder, or a zip archive. It is read twice, first to judge it as
/// a whole and then to copy it; nothing is written beside the copy. Blocks; for one worker thread at a time.
class PortableSource {
public:
    static constexpr int MaximumEntries = 300000;

    static bool isExecutable(const QString& name) {
        return name.endsWith(QLatin1String(".exe"), Qt::CaseInsensitive);
    }

    virtual ~PortableSource() = default;

    /// Null, with a reason, for what is neither.
    static std::unique_ptr<PortableSource> at(const QString& path, Reason* failure);

    /// Looks through all of it, and refuses what can't or must not be copied.
    virtual Reason survey(const std::atomic_bool& cancelled) = 0;
    /// Copies it into an existing empty directory. On failure a part stays there.
    virtual Reason copyTo(const QString& directory, BackupFile::Progress* progress) = 0;

    /// After survey().
    qint64 bytes() const { return m_bytes; }
    int entries() const { return m_entries; }
    /// Whether all its programs, helpers aside, are made for 32-bit Windows.
    bool needs32Bit() const { return m_has32Bit && !m_has64Bit; }
    /// What is not copied: links that lead out, pipes and the like. Relative paths, some hundred at most.
    QStringList leftOut() const { return m_leftOut; }

protected:
    explicit PortableSource(const QString& path) : m_path(path) {}

    static Reason cannotWrite(const QString& path, int error);
    /// Counts a file by its name.
    void noteFile(const QString& name, qint64 bytes);
    /// Counts an executable by its headers.
    void noteProgram(const QString& name, const PeFile& headers);
    /// The verdict on what has been counted.
    Reason checkPrograms() const;
    void leaveOut(const QString& path);

    const QString m_path;
    qint64 m_bytes = 0;
    int m_entries = 0;

private:
    QStringList m_leftOut;
    bool m_hasProgram = false;
    bool m_has32Bit = false;
    bool m_has64Bit = false;
};
