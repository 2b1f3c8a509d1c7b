#pragma once

#include "store/records/VeskClientAppInfoQueryResponse_data.h"

namespace OpenAPI {

#define VESK_CLIENT_APP_INFO_QUERY_RESPONSE_FIELDS(VALUE, FLAG) \
    FLAG(result, Result)                                        \
    VALUE(qint32, code, Code)                                   \
    VALUE(VeskClientAppInfoQueryResponse_data, data, Data)

/// The answer about one application.
class VeskClientAppInfoQueryResponse : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientAppInfoQueryResponse, VESK_CLIENT_APP_INFO_QUERY_RESPONSE_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientAppInfoQueryResponse)
