#pragma once

#include <QVector>

#include "feedback/client/FeedBackApi.h"
#include "feedback/client/LogUpload.h"

struct SentPart;

/// What the page "What is sent" of a rating shows.
namespace SentRating {

/// Where it goes, and when.
QString introduction();

/// Every field, header and file. Without a configuration there are neither `suggestion` nor `copies`; reads
/// the names of the copies from disk.
QVector<SentPart> parts(const AppScoreRequest& request, const BottleVersions& versions,
                        const QString& suggestion, const LogUpload::Copies& copies);

}  // namespace SentRating
