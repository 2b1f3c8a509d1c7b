#pragma once

namespace OpenAPI {

/// Lets all records go through queued signals, under their full names. May be called again.
void registerVeskClientRecords();

}  // namespace OpenAPI
