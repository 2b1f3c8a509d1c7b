#pragma once

#include "store/records/VeskClientRecord.h"

namespace OpenAPI {

#define VESK_CLIENT_PAGINATION_FIELDS(VALUE, FLAG) \
    VALUE(qint32, total, Total)                    \
    VALUE(qint32, pageIndex, PageIndex)            \
    VALUE(qint32, pageSize, PageSize)

/// A page of a list. Pages are counted from 1; total is the number of all entries.
class VeskClientPagination : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientPagination, VESK_CLIENT_PAGINATION_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientPagination)
