#pragma once

#include "store/records/VeskClientRecord.h"

namespace OpenAPI {

#define VESK_CLIENT_CATEGORY_INFO_FIELDS(VALUE, FLAG) \
    VALUE(qint32, id, Id)                             \
    VALUE(QString, name, Name)                        \
    VALUE(qint32, sort, Sort)

/// One category; sort is the place that the server gives it.
class VeskClientCategoryInfo : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientCategoryInfo, VESK_CLIENT_CATEGORY_INFO_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientCategoryInfo)
