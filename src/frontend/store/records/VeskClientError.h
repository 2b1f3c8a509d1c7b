#pragma once

#include "store/records/VeskClientRecord.h"

namespace OpenAPI {

#define VESK_CLIENT_ERROR_FIELDS(VALUE, FLAG) \
    FLAG(result, Result)                      \
    VALUE(QString, code, Code)                \
    VALUE(QString, msg, Msg)                  \
    VALUE(QString, err, Err)

/// What went wrong. The code is a text here, unlike in answers.
class VeskClientError : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientError, VESK_CLIENT_ERROR_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientError)
