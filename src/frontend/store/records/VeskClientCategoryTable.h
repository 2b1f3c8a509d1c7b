#pragma once

#include "store/records/VeskClientCategoryInfo.h"
#include "store/records/VeskClientPagination.h"

namespace OpenAPI {

#define VESK_CLIENT_CATEGORY_TABLE_FIELDS(VALUE, FLAG) \
    VALUE(QList<VeskClientCategoryInfo>, list, List)   \
    VALUE(VeskClientPagination, pagination, Pagination)

/// A page of categories.
class VeskClientCategoryTable : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientCategoryTable, VESK_CLIENT_CATEGORY_TABLE_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientCategoryTable)
