#include "storeserver/reports/ReportAnswer.h"

#include <cerrno>

namespace StoreServer {

namespace {

constexpr int RetrySeconds = 60;

}  // namespace

StoreAnswer reportAnswer(const Refusal& refusal, const std::string& datas) {
    StoreAnswer answer;
    answer.status = refusal.status;
    answer.contentType = "application/json; charset=utf-8";
    answer.body = R"({"status":)" + std::to_string(refusal.status) + R"(,"desc":")" +
                  refusal.text.toStdString() + R"(","datas":[)" + datas + "]}";
    answer.cacheControl = "no-store";
    if (refusal.status == 429 || refusal.status == 503)
        answer.retryAfterSeconds = RetrySeconds;
    return answer;
}

int statusOf(int error) {
    if (error == ENOSPC || error == EDQUOT)
        return 507;
    return error == EEXIST ? 409 : 500;
}

}  // namespace StoreServer
