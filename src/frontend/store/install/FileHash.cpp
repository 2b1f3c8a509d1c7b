#include "store/install/FileHash.h"

#include <QCryptographicHash>
#include <QDebug>
#include <atomic>

#include "backend/InBackground.h"
#include "fenk/system/RegularFile.h"

namespace {
constexpr qint64 ChunkBytes = 1 << 20;
constexpr int ProgressMs = 200;
}  // namespace

struct FileHash::Work {
    std::atomic_bool isCancelled{false};
    std::atomic_int percent{0};

    QByteArray hash(const QString& path) {
        QFile file;
        if (!Fenk::RegularFile::open(file, path, Fenk::RegularFile::Links::Followed)) {
            qWarning().noquote() << "cannot read" << path;
            return {};
        }
        QCryptographicHash sum(QCryptographicHash::Sha256);
        const qint64 size = qMax<qint64>(file.size(), 1);
        for (qint64 done = 0; !isCancelled;) {
            const QByteArray chunk = file.read(ChunkBytes);
            if (chunk.isEmpty())
                break;
            sum.addData(chunk);
            done += chunk.size();
            percent = int(qMin<qint64>(100, done * 100 / size));
        }
        if (file.error() != QFile::NoError) {
            qWarning().noquote() << "cannot read" << path << file.errorString();
            return {};
        }
        return sum.result().toHex();
    }
};

FileHash::FileHash(QObject* parent) : QObject(parent) {
    m_progress.setInterval(ProgressMs);
    connect(&m_progress, &QTimer::timeout, this, [this] {
        if (m_work)
            Q_EMIT progressChanged(m_work->percent);
    });
}

FileHash::~FileHash() {
    cancel();
}

void FileHash::start(const QString& path) {
    cancel();
    const auto work = std::make_shared<Work>();
    m_work = work;
    m_progress.start();
    inBackground(
        this, [work, path] { return work->hash(path); },
        [this, work](const QByteArray& sha256) {
            if (work != m_work)
                return;
            m_work.reset();
            m_progress.stop();
            Q_EMIT done(sha256);
        });
}

void FileHash::cancel() {
    if (m_work)
        m_work->isCancelled = true;
    m_work.reset();
    m_progress.stop();
}
