#pragma once

#include <archive.h>
#include <archive_entry.h>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <atomic>
#include <memory>

/// What the writer and the reader of backups share: the layout of the archive, and what ends themselves.
namespace BackupFile {

/// The names of the entries in their order: the list, the registry of the template, the bottle's files, and
/// the checksums of all files in the form of sha256sum.
extern const char ListEntry[];
extern const char TemplatePrefix[];  ///< then the name of one of registries()
extern const char BottlePrefix[];    ///< then a path of the list
extern const char ChecksumsEntry[];
QStringList registries();

constexpr int BlockBytes = 1024 * 1024;
constexpr int ChecksumCharacters = 64;
constexpr int MaximumRegistryBytes = 64 * 1024 * 1024;

struct Close {
    void operator()(archive* handle) const {
        archive_read_free(handle);  // frees writers as well
    }
    void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};
using Handle = std::unique_ptr<archive, Close>;
using Entry = std::unique_ptr<archive_entry, Close>;

QString faultOf(archive* handle);

/// SHA-256 of what was added.
class Checksum {
public:
    Checksum();
    ~Checksum();
    void add(const void* data, size_t size);
    QByteArray hex() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// One line of sha256sum's.
QByteArray checksumLine(const QByteArray& checksum, const QByteArray& name);

/// How far the work is, for the thread that shows it, and whether it shall end.
struct Progress {
    std::atomic<qint64> done{0};   ///< bytes of the bottle's files
    std::atomic<qint64> total{0};  ///< 0 as long as it is not known
    std::atomic_bool cancelled{false};
};

}  // namespace BackupFile
