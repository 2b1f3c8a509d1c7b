#pragma once

#include "store/records/VeskClientRecord.h"

namespace OpenAPI {

#define VESK_CLIENT_FIELD_SORT_FIELDS(VALUE, FLAG) \
    VALUE(QString, field, Field)                   \
    VALUE(QString, sort, Sort)

/// How a list is to be sorted: the field, and the direction.
class VeskClientFieldSort : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientFieldSort, VESK_CLIENT_FIELD_SORT_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientFieldSort)
