#pragma once

#include "store/records/VeskClientRecord.h"

namespace OpenAPI {

#define VESK_CLIENT_DOWNLOAD_YML_REQ_FIELDS(VALUE, FLAG) VALUE(QString, appInfoId, AppInfoId)

/// Which manifest is asked for.
class VeskClientDownloadYmlReq : public VeskClientObject {
    VESK_CLIENT_RECORD(VeskClientDownloadYmlReq, VESK_CLIENT_DOWNLOAD_YML_REQ_FIELDS)
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::VeskClientDownloadYmlReq)
