#pragma once

#include <QObject>
#include <QString>
#include <memory>

class QNetworkAccessManager;

/// Asks Aliyun's text moderation (action TextModerationPlus, version 2022-03-02) whether a text may be
/// published. Each check ends in exactly one of the signals, later than the call, and has no limit in time;
/// one that is aborted, or under way when this object is deleted, ends without a signal. GUI thread.
class AliyunGreenApi : public QObject {
    Q_OBJECT
public:
    /// The keys are plain text. Without both of them and an address nothing is sent: the check ends with an
    /// error.
    AliyunGreenApi(const QString& accessKeyId, const QString& accessKeySecret, QObject* parent = nullptr);
    /// With the keys of this build.
    explicit AliyunGreenApi(QObject* parent = nullptr);

    /// Instead of the address of this build.
    void setEndpoint(const QString& url) { m_endpoint = url; }

    void checkContent(const QString& text);
    /// The checks under way end without a signal. Not from a slot of one.
    void abort();

Q_SIGNALS:
    /// The body of the answer; ModerationVerdict reads it.
    void replyOccurred(const QString& result);
    /// For logs.
    void errorOccurred(const QString& error);

private:
    QString m_endpoint;
    QString m_accessKeyId;
    QString m_accessKeySecret;
    QNetworkAccessManager* m_network;
    std::unique_ptr<QObject> m_checks;  ///< owns the requests
};
