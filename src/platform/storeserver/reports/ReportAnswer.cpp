#include "storeserver/reports/ReportAnswer.h"

namespace StoreServer {

StoreAnswer reportAnswer(const Refusal& refusal, const std::string& datas) {
    StoreAnswer answer;
    answer.status = refusal.status;
    answer.contentType = "application/json; charset=utf-8";
    answer.body = R"({"status":)" + std::to_string(refusal.status) + R"(,"desc":")" +
                  refusal.text.toStdString() + R"(","datas":[)" + datas + "]}";
    answer.cacheControl = "no-store";
    return answer;
}

}  // namespace StoreServer
