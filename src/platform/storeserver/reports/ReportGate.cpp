#include "storeserver/reports/ReportGate.h"

#include <QRegularExpression>
#include <algorithm>

#include "storeserver/reports/ReportSignature.h"

namespace StoreServer {

namespace {

constexpr qint64 Share = 4;  // of the room
constexpr qint64 LeastKiB = 64 * 1024;
constexpr qint64 MostKiB = 1024 * 1024;
constexpr int DayMs = 24 * 60 * 60 * 1000;
const Refusal TooMany{429, "too many requests, please try again later"};

Refusal refusalOf(NounceLedger::Verdict verdict) {
    switch (verdict) {
        case NounceLedger::Verdict::Fresh:
            return {};
        case NounceLedger::Verdict::Used:
            return {401, "the request was sent before"};
        case NounceLedger::Verdict::OutOfTime:
            return {401, "the time of the request is wrong, please check the clock"};
        case NounceLedger::Verdict::Full:
            break;
    }
    return {503, TooMany.text};
}

}  // namespace

RateLimiter::Limits ReportGate::ofBytes(qint64 roomBytes) {
    const int burst = int(std::clamp(roomBytes / Share / 1024, LeastKiB, MostKiB));
    return {burst, DayMs / burst};
}

Refusal ReportGate::admit(const std::string& client, qint64 nowMs) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_addresses.take(client, nowMs) ? Refusal() : TooMany;
}

Refusal ReportGate::admitBytes(const std::string& client, qint64 bytes, qint64 nowMs) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_bytes.take(client, nowMs, int(bytes / 1024) + 1) ? Refusal() : TooMany;
}

void ReportGate::giveBack(const std::string& client, qint64 bytes) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bytes.give(client, int(bytes / 1024));
}

Refusal ReportGate::admitBody(const QJsonObject& body, const std::string& device, qint64 nowMs) {
    // As the signature has no separators, texts of another form could be parts of others.
    static const QRegularExpression nounces("\\A[A-Za-z0-9]{8}\\z");
    static const QRegularExpression times("\\A[0-9]{1,18}\\z");
    const QString time = body.value("time").toString();
    const QString nounce = body.value("nounce").toString();
    if (!times.match(time).hasMatch() || !nounces.match(nounce).hasMatch())
        return {400, "time or nounce is missing or malformed"};
    if (!ReportSignature::isGood(body, m_secret))
        return {401, "the signature is wrong"};
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Refusal refusal = refusalOf(m_nounces.verdict(nounce, time.toLongLong(), nowMs));
    if (!refusal.isNone())
        return refusal;
    if (!m_devices.take(device, nowMs))
        return TooMany;
    m_nounces.enter(nounce, nowMs);
    return {};
}

}  // namespace StoreServer
