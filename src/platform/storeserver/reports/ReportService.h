#pragma once

#include <functional>

#include "storeserver/catalogue/Catalogue.h"
#include "storeserver/reports/ReportBodies.h"
#include "storeserver/reports/ReportDirectory.h"
#include "storeserver/reports/ReportGate.h"
#include "storeserver/reports/ReportKeeper.h"
#include "storeserver/reports/ScoreBook.h"
#include "storeserver/request/RequestBody.h"
#include "storeserver/request/StoreAddress.h"

namespace StoreServer {

/// Takes reports, scores and their files below /store-common-report, and keeps them in a directory. Answers
/// are JSON with "status", "desc" and "datas". For any thread.
class ReportService {
public:
    struct Settings {
        QString directory;
        QString secret;  ///< which clients sign with; not empty
        qint64 roomBytes = 0;
        StoreAddress address;
        std::function<qint64()> clock;  ///< ms since 1970, instead of the machine's
    };

    /// Throws ReportError.
    explicit ReportService(const Settings& settings);

    bool isFor(const StoreRequest& request) const;
    /// To a request without a body.
    StoreAnswer answer(const StoreRequest& request, const Catalogue& catalogue) const;
    /// A BodyTaker.
    std::unique_ptr<RequestBody> take(const StoreRequest& head, size_t length);
    /// To a request with this signed body.
    StoreAnswer answerBody(const StoreRequest& request, std::string_view text);

    VotesByName votes() const { return m_scores.votes(); }

private:
    std::unique_ptr<RequestBody> takeUpload(const StoreRequest& head, const QString& key, size_t length);
    StoreAnswer giveUpload(const StoreRequest& request, const QJsonObject& body);
    Refusal takeFeedback(const StoreRequest& request, const QJsonObject& body);
    Refusal takeScore(const StoreRequest& request, const QJsonObject& body);
    Refusal save(const StoreRequest& request, const ReportDirectory::Report& report);
    QByteArray codeOf(const StoreRequest& request, const QJsonObject& record, const QStringList& more) const;
    bool hasUpload(const StoreRequest& request, const QString& key, UploadKind kind) const;
    std::string pathOf(const StoreRequest& request) const;

    const Settings m_settings;
    ReportDirectory m_directory;
    UploadKeys m_keys;
    ReportGate m_gate;
    ScoreBook m_scores;
    ReportKeeper m_keeper;  // the last, since its thread uses others
};

}  // namespace StoreServer
