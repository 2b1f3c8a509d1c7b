// What reports and ratings read and send: logs, names, answers of the service. The first byte chooses which.
#include <QJsonDocument>
#include <QLoggingCategory>
#include <cstdlib>

#include "core/base/LogScrub.h"
#include "feedback/client/ReportReply.h"
#include "feedback/client/ReportSignature.h"
#include "feedback/client/SuggestionFile.h"
#include "net/HttpAnswer.h"

namespace {

constexpr int LongestFileName = 255;

void require(bool isTrue) {
    if (!isTrue)
        std::abort();
}

void scrub(const QByteArray& log) {
    static const LogScrub scrub({{"/data/anna-m"}, "anna-m", "annas-machine"});
    const QByteArray clean = ' ' + scrub.scrubbed(log).toLower() + ' ';
    for (const char* name :
         {"/data/anna-m/", "\\data\\anna-m\\", " anna-m ", "\\anna-m\\", " annas-machine "})
        require(!clean.contains(name));
}

void name(const QString& text) {
    const QString file = SuggestionFile::nameFor(text, QDateTime({2026, 1, 2}, {3, 4, 5}));
    require(!file.contains('/') && !file.startsWith('.') && file.toUtf8().size() <= LongestFileName);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool quiet = (QLoggingCategory::setFilterRules("*=false"), qputenv("LC_ALL", "C.UTF-8"));
    if (!quiet || size == 0)
        return 0;
    const QByteArray text(reinterpret_cast<const char*>(data) + 1, int(size) - 1);
    if (data[0] % 3 == 0) {
        scrub(text);
    } else if (data[0] % 3 == 1) {
        name(QString::fromUtf8(text));
    } else {
        HttpAnswer answer;
        answer.body = text;
        ReportReply::of(answer);
        const QJsonObject body = QJsonDocument::fromJson(text).object();
        const QJsonObject made = ReportSignature::sign(body, "s", 1, "n");
        require(ReportSignature::sign(made, "s", 1, "n") == made);
    }
    return 0;
}
