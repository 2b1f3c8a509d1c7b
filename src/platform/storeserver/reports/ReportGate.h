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

    /// KiB of reports and files from one address: a share of the room at once, and as much in a day.
    static RateLimiter::Limits ofBytes(qint64 roomBytes);

    ReportGate(const QString& secret, qint64 roomBytes) : m_secret(secret), m_bytes(ofBytes(roomBytes)) {}

    /// Before a body is read. `client` as of clientAddress().
    Refusal admit(const std::string& client, qint64 nowMs);
    /// Before something is kept.
    Refusal admitBytes(const std::string& client, qint64 bytes, qint64 nowMs);
    /// What was admitted and did not come.
    void giveBack(const std::string& client, qint64 bytes);
    /// Each body is admitted once: its time and its signature must be good. Only one that is costs the device
    /// a token.
    Refusal admitBody(const QJsonObject& body, const std::string& device, qint64 nowMs);

private:
    const QString m_secret;
    std::mutex m_mutex;
    RateLimiter m_addresses{OfAddress};
    RateLimiter m_bytes;
    RateLimiter m_devices{OfDevice};
    NounceLedger m_nounces;
};

}  // namespace StoreServer
