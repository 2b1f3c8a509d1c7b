#pragma once

#include "store/records/VeskClientAppInfoTable.h"

namespace OpenAPI {

#define VESK_CLIENT_APP_INFO_RESPONSE_FIELDS(VALUE, FLAG) \
    FLAG(result, Result)                                  \
    VALUE(qint32, code, Code)                             \
    VALUE(QString, msg, Msg)                              \
    VALUE(QString, err, Err)                              \
    VALUE(VeskClientAppInfoTable, data, Data)

/// The answer with a page of applications.
class VeskClientAppInfoResponse : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientAppInfoResponse, VESK_CLIENT_APP_INFO_RESPONSE_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientAppInfoResponse)
