#pragma once

#include <optional>

#include "packaging/manifest/ManifestForm.h"

class QThreadPool;

/// The answers of a bottle's last export: dump-manifest.json in the bottle's directory, a JSON object with
/// the texts "bottlesName", "programUuid", "introduction", "downloadUrl", "packageSize", "contributor",
/// "contributorEmail" and "category". Failures are logged.
namespace RememberedAnswers {

/// Nothing when there is no file, which is not logged, or none that can be read. Keys that are missing or of
/// another type read as empty; the values are untrusted.
std::optional<ManifestForm> read(const QString& bottlePath);

/// Replaces the file as a whole. Blocks on a slow disk.
bool write(const QString& bottlePath, const ManifestForm& form);

/// The same on the thread of these files, one after the other; the process does not end before. What is read
/// on it comes after what was queued.
void queue(const QString& bottlePath, const ManifestForm& form);
QThreadPool* thread();

}  // namespace RememberedAnswers
