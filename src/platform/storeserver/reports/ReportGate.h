#pragma once

#include <QJsonObject>
#include <mutex>
#include <string>

#include "storeserver/reports/NounceLedger.h"
#include "storeserver/reports/RateLimiter.h"

namespace StoreServer {

/// Why a request is refused: a status of HTTP, 200 if it is not, and an English text that needs no escapes.
struct Refusal {
    int status = 200;
    QString text;

    bool isNone() const { return status == 200; }
};

/// Decides who may send something now. For any thread.
class ReportGate {
public:
    static constexpr RateLimiter::Limits OfDevice{40, 60 * 1000};   ///< a report with its files needs twelve
    static constexpr RateLimiter::Limits OfAddress{200, 5 * 1000};  ///< many devices may share one

    static constexpr RateLimiter::Limits OfBytes{256, 60 * 1000};  ///< MiB of uploads from one address

    explicit ReportGate(const QString& secret) : m_secret(secret) {}

    /// Before a body is read. `client` as of clientAddress().
    Refusal admit(const std::string& client, qint64 nowMs);
    /// Before an upload is read.
    Refusal admitUpload(const std::string& client, size_t bytes, qint64 nowMs);
    /// Each body is admitted once: its time and its signature must be good.
    Refusal admitBody(const QJsonObject& body, const std::string& device, qint64 nowMs);

private:
    const QString m_secret;
    std::mutex m_mutex;
    RateLimiter m_addresses{OfAddress};
    RateLimiter m_uploads{OfBytes};
    RateLimiter m_devices{OfDevice};
    NounceLedger m_nounces;
};

}  // namespace StoreServer
