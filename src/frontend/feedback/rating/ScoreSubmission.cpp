#include "feedback/rating/ScoreSubmission.h"

#include <QDebug>

#include "backend/InBackground.h"
#include "feedback/client/FeedBackApi.h"
#include "feedback/client/SuggestionFile.h"
#include "feedback/rating/ScoreFacts.h"

ScoreSubmission::ScoreSubmission(const ProgramRef& program, const ScoreFacts* facts, QObject* parent)
    : QObject(parent),
      m_program(program),
      m_facts(facts),
      m_suggestionDirectory(SuggestionFile::CommonDirectory) {}

ScoreSubmission::~ScoreSubmission() = default;

AppScoreRequest ScoreSubmission::request(int score) const {
    return {score, m_facts->appName(), m_facts->appVersion(), {}};
}

void ScoreSubmission::submit(const Rating& rating) {
    if (m_step != Step::Idle)
        return;
    m_rating = rating;
    m_missing = {};
    m_work = std::make_unique<QObject>();
    setStep(Step::Collecting);
    if (m_facts->isReady())
        onFacts();
    else
        connect(m_facts, &ScoreFacts::ready, m_work.get(), [this] { onFacts(); });
}

void ScoreSubmission::onFacts() {
    if (!m_rating.withConfiguration) {
        send({});
    } else if (m_rating.configuration) {
        writeSuggestion();
    } else {
        const auto take = [this](const LogUpload::Copies& copies) {
            m_rating.configuration = copies;
            writeSuggestion();
        };
        LogUpload::collectConfiguration(m_program.bottle, m_work.get(), take);
    }
}

/// A file that is ready only after the rating was cancelled is removed with the result.
void ScoreSubmission::writeSuggestion() {
    setStep(Step::Uploading);
    if (m_rating.suggestion.trimmed().isEmpty()) {
        upload(nullptr);
        return;
    }
    const QString name = SuggestionFile::nameFor(m_facts->appName(), QDateTime::currentDateTime());
    inBackground(
        m_work.get(),
        [directory = m_suggestionDirectory, name, text = m_rating.suggestion] {
            return SuggestionFile::write(directory, name, text);
        },
        [this](const std::shared_ptr<SuggestionFile>& suggestion) {
            m_missing.setFlag(Missing::Suggestion, !suggestion);
            upload(suggestion);
        });
}

void ScoreSubmission::upload(const std::shared_ptr<SuggestionFile>& suggestion) {
    m_suggestion = suggestion;
    auto* upload = new LogUpload(m_work.get());
    connect(upload, &LogUpload::finished, m_work.get(), [this](const QString& key) {
        if (key.isEmpty())
            m_missing |= m_suggestion ? Missing::Configuration | Missing::Suggestion : Missing::Configuration;
        m_suggestion.reset();
        send(key);
    });
    upload->uploadConfiguration(m_rating.configuration,
                                suggestion ? QStringList(suggestion->path()) : QStringList());
}

void ScoreSubmission::send(const QString& configurationKey) {
    setStep(Step::Sending);
    qInfo("start apply score");
    AppScoreRequest score = request(m_rating.score);
    score.cfgFileKey = configurationKey;
    auto* api = new FeedBackApi(m_work.get());
    api->submitAppScore(score, m_facts->versions(), m_work.get(), [this](bool ok, const QString& desc) {
        m_work.release()->deleteLater();  // this is called by a part of it
        setStep(Step::Idle);
        Q_EMIT finished(ok, desc, m_missing);
    });
}

void ScoreSubmission::cancel() {
    if (m_step == Step::Idle)
        return;
    qInfo("the rating is cancelled");
    m_work.reset();
    m_suggestion.reset();
    setStep(Step::Idle);
}

void ScoreSubmission::setStep(Step step) {
    m_step = step;
    Q_EMIT stepChanged();
}
