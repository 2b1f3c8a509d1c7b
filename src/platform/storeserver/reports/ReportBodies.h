#pragma once

#include <QJsonObject>
#include <QStringList>
#include <string_view>

#include "storeserver/reports/UploadKeys.h"

namespace StoreServer {

/// What clients send, checked but for the keys of uploads. Each reader returns an error text for developers
/// of clients, which is empty if all is well. Fields that are not known are refused, as the signature does
/// not tell where one ends. Limits are at least those of the client.
namespace ReportBodies {

constexpr size_t MaximumBytes = 128 * 1024;
constexpr size_t MaximumDepth = 16;

/// The object of a body. Only what isParsableJson() is parsed.
QString parse(std::string_view bytes, QJsonObject* body);

/// A report. `record` is what is kept of it: of the machine only known facts, and no keys of files.
struct Feedback {
    QJsonObject record;
    QStringList imageKeys;
    QString logKey;  ///< empty for none
};
QString readFeedback(const QJsonObject& body, Feedback* feedback);

struct Score {
    QString appName;  ///< not empty
    QString appVersion;
    int score = 0;    ///< 1 to 5
    QString fileKey;  ///< empty for none
};
QString readScore(const QJsonObject& body, Score* score);

QString readUpload(const QJsonObject& body, UploadKind* kind);

}  // namespace ReportBodies

}  // namespace StoreServer
