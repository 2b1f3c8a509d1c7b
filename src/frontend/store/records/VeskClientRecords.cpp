#include "store/records/VeskClientRecords.h"

#include "store/records/VeskClientAppInfo.h"
#include "store/records/VeskClientAppInfoQueryResponse.h"
#include "store/records/VeskClientAppInfoQueryResponse_data.h"
#include "store/records/VeskClientAppInfoResponse.h"
#include "store/records/VeskClientAppInfoTable.h"
#include "store/records/VeskClientCategoriesResponse.h"
#include "store/records/VeskClientCategoryInfo.h"
#include "store/records/VeskClientCategoryTable.h"
#include "store/records/VeskClientDownloadYmlError.h"
#include "store/records/VeskClientDownloadYmlError_data.h"
#include "store/records/VeskClientDownloadYmlReq.h"
#include "store/records/VeskClientError.h"
#include "store/records/VeskClientFieldSort.h"
#include "store/records/VeskClientPagination.h"

namespace OpenAPI {

void registerVeskClientRecords() {
    qRegisterMetaType<VeskClientAppInfo>("OpenAPI::VeskClientAppInfo");
    qRegisterMetaType<VeskClientAppInfoQueryResponse>("OpenAPI::VeskClientAppInfoQueryResponse");
    qRegisterMetaType<VeskClientAppInfoQueryResponse_data>("OpenAPI::VeskClientAppInfoQueryResponse_data");
    qRegisterMetaType<VeskClientAppInfoResponse>("OpenAPI::VeskClientAppInfoResponse");
    qRegisterMetaType<VeskClientAppInfoTable>("OpenAPI::VeskClientAppInfoTable");
    qRegisterMetaType<VeskClientCategoriesResponse>("OpenAPI::VeskClientCategoriesResponse");
    qRegisterMetaType<VeskClientCategoryInfo>("OpenAPI::VeskClientCategoryInfo");
    qRegisterMetaType<VeskClientCategoryTable>("OpenAPI::VeskClientCategoryTable");
    qRegisterMetaType<VeskClientDownloadYmlError>("OpenAPI::VeskClientDownloadYmlError");
    qRegisterMetaType<VeskClientDownloadYmlError_data>("OpenAPI::VeskClientDownloadYmlError_data");
    qRegisterMetaType<VeskClientDownloadYmlReq>("OpenAPI::VeskClientDownloadYmlReq");
    qRegisterMetaType<VeskClientError>("OpenAPI::VeskClientError");
    qRegisterMetaType<VeskClientFieldSort>("OpenAPI::VeskClientFieldSort");
    qRegisterMetaType<VeskClientPagination>("OpenAPI::VeskClientPagination");
}

}  // namespace OpenAPI
