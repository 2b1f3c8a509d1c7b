#pragma once

#include "store/records/VeskClientDownloadYmlError_data.h"

namespace OpenAPI {

#define VESK_CLIENT_DOWNLOAD_YML_ERROR_FIELDS(VALUE, FLAG) \
    FLAG(result, Result)                                   \
    VALUE(qint32, code, Code)                              \
    VALUE(VeskClientDownloadYmlError_data, data, Data)

/// The body in the place of a manifest that can't be served.
class VeskClientDownloadYmlError : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientDownloadYmlError, VESK_CLIENT_DOWNLOAD_YML_ERROR_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientDownloadYmlError)
