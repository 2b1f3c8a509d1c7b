#pragma once

#include "storeserver/reports/ReportGate.h"
#include "storeserver/request/RequestBody.h"

namespace StoreServer {

/// {"status":...,"desc":...,"datas":[...]} with the same status as that of HTTP. `datas` are JSON objects
/// with commas between them.
StoreAnswer reportAnswer(const Refusal& refusal, const std::string& datas = {});

/// The status for an error of the system: no room, there already, or anything else.
int statusOf(int error);

/// A body that is not wanted. It is read nevertheless, as clients that are still sending do not see an
/// answer.
class RefusedBody : public RequestBody {
public:
    explicit RefusedBody(const Refusal& refusal) : m_refusal(refusal) {}

    void write(std::string_view) override {}
    StoreAnswer answer(const StoreRequest&) override { return reportAnswer(m_refusal); }

private:
    Refusal m_refusal;
};

}  // namespace StoreServer
