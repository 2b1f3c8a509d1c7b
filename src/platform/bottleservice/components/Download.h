#pragma once

#include <QFile>
#include <QObject>
#include <QTimer>
#include <atomic>
#include <memory>

#include "bottleservice/components/Sources.h"

class QNetworkAccessManager;
class QNetworkReply;

/// Downloads one file into a directory: tries the addresses in order, resumes after a broken connection,
/// checks size and checksum, and only then gives the file its name. The unfinished file is "<name>.part"
/// beside it, and a later download resumes it when the checksum is known. A correct file that exists already
/// is not fetched again. Owned by Downloads; lives in the main thread.
class Download : public QObject {
    Q_OBJECT

public:
    static constexpr int StallMs = 60000;

    Download(QNetworkAccessManager* network, const Source& source, const QString& directory,
             QObject* parent = nullptr);
    ~Download() override;

    /// How long a server may send nothing before the next address is tried.
    void setStallMs(int ms) { m_stallMs = ms; }

    void start();
    /// finished() follows with Reason::Cancelled.
    void cancel();

Q_SIGNALS:
    /// In bytes; total is 0 while it is not known. A few times a second at most.
    void progress(qint64 received, qint64 total);
    /// Exactly once, never from start() itself; either path or reason is empty. The reason has a statement
    /// for each address.
    void finished(const QString& path, const Reason& reason);

private:
    QString partPath() const { return m_path + ".part"; }
    qint64 limit() const { return m_source.size >= 0 ? m_source.size : Source::MaximumBytes; }
    void tryNext();
    void fetch(const QString& address);
    void copy(const QString& path);
    void onHeaders();
    void onBytes();
    void onReplyFinished();
    bool keep(const QByteArray& bytes);
    void verify(const QString& path, bool isPart);
    void onVerified(const Reason& fault, const QString& path, bool isPart);
    void dropReply();
    QString shownAddress() const;
    Reason replyFault() const;
    void addressFailed(const Reason& reason);
    void finish(const Reason& reason);
    void reportProgress(bool always);

    QNetworkAccessManager* m_network;
    Source m_source;
    QString m_path;
    int m_stallMs = StallMs;
    int m_next = 0;      ///< the next address
    int m_breaks = 0;    ///< how often the present address broke off
    qint64 m_begin = 0;  ///< where the present reply began
    qint64 m_total = 0;
    qint64 m_sinceStall = 0;
    bool m_isResumed = false;  ///< the file begins with data of an earlier address or service
    Reason m_faults;           ///< of the addresses that have failed
    QNetworkReply* m_reply = nullptr;
    QFile m_part;
    QTimer m_stall;
    QTimer m_quiet;  ///< between two reports of progress
    bool m_done = false;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
};
