#pragma once

#include "store/records/VeskClientCategoryTable.h"

namespace OpenAPI {

#define VESK_CLIENT_CATEGORIES_RESPONSE_FIELDS(VALUE, FLAG) \
    FLAG(result, Result)                                    \
    VALUE(qint32, code, Code)                               \
    VALUE(QString, msg, Msg)                                \
    VALUE(QString, err, Err)                                \
    VALUE(VeskClientCategoryTable, data, Data)

/// The answer with the categories.
class VeskClientCategoriesResponse : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientCategoriesResponse, VESK_CLIENT_CATEGORIES_RESPONSE_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientCategoriesResponse)
