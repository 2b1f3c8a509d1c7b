#pragma once

#include "store/records/VeskClientRecord.h"

namespace OpenAPI {

#define VESK_CLIENT_DOWNLOAD_YML_ERROR_DATA_FIELDS(VALUE, FLAG) VALUE(QString, msg, Msg)

/// Why a manifest can't be served.
class VeskClientDownloadYmlError_data : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientDownloadYmlError_data, VESK_CLIENT_DOWNLOAD_YML_ERROR_DATA_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientDownloadYmlError_data)
