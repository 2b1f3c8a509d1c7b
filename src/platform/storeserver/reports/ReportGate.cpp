#include "storeserver/reports/ReportGate.h"

#include "storeserver/reports/ReportSignature.h"

namespace StoreServer {

namespace {

constexpr int MaximumNounce = 64;

const Refusal TooMany{429, "too many requests, please try again later"};

}  // namespace

Refusal ReportGate::admit(const std::string& client, qint64 nowMs) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_addresses.take(client, nowMs) ? Refusal() : TooMany;
}

Refusal ReportGate::admitUpload(const std::string& client, size_t bytes, qint64 nowMs) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_uploads.take(client, nowMs, int(bytes >> 20) + 1) ? Refusal() : TooMany;
}

Refusal ReportGate::admitBody(const QJsonObject& body, const std::string& device, qint64 nowMs) {
    bool isNumber = false;
    const qint64 signedMs = body.value("time").toString().toLongLong(&isNumber);
    const QString nounce = body.value("nounce").toString();
    if (!isNumber || nounce.isEmpty() || nounce.size() > MaximumNounce)
        return {400, "time or nounce is missing"};
    if (!ReportSignature::isGood(body, m_secret))
        return {401, "the signature is wrong"};
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_devices.take(device, nowMs))
        return TooMany;
    switch (m_nounces.enter(nounce, signedMs, nowMs)) {
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

}  // namespace StoreServer
