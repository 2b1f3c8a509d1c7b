#pragma once

#include "store/records/VeskClientAppInfo.h"
#include "store/records/VeskClientPagination.h"

namespace OpenAPI {

#define VESK_CLIENT_APP_INFO_TABLE_FIELDS(VALUE, FLAG) \
    VALUE(QList<VeskClientAppInfo>, list, List)        \
    VALUE(VeskClientPagination, pagination, Pagination)

/// A page of applications.
class VeskClientAppInfoTable : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientAppInfoTable, VESK_CLIENT_APP_INFO_TABLE_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientAppInfoTable)
