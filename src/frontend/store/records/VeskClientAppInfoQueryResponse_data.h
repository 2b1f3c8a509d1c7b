#pragma once

#include "store/records/VeskClientAppInfo.h"

namespace OpenAPI {

#define VESK_CLIENT_APP_INFO_QUERY_RESPONSE_DATA_FIELDS(VALUE, FLAG) \
    VALUE(VeskClientAppInfo, AppInfo, AppInfo)

/// The application inside the answer about one.
class VeskClientAppInfoQueryResponse_data : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientAppInfoQueryResponse_data, VESK_CLIENT_APP_INFO_QUERY_RESPONSE_DATA_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientAppInfoQueryResponse_data)
