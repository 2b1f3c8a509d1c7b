#pragma once

#include <QObject>
#include <QTimer>
#include <memory>

/// Computes the SHA-256 of a file in the background. A start replaces the one before, which then says
/// nothing more. GUI thread; ends with its destruction.
class FileHash : public QObject {
    Q_OBJECT
public:
    explicit FileHash(QObject* parent);
    ~FileHash() override;

    void start(const QString& path);
    void cancel();
    bool isRunning() const { return bool(m_work); }

Q_SIGNALS:
    void progressChanged(int percent);
    /// 64 digits in lower case; empty for a file that could not be read.
    void done(const QByteArray& sha256);

private:
    struct Work;

    std::shared_ptr<Work> m_work;
    QTimer m_progress;
};
