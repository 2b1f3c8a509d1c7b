#include "feedback/rating/ScoreSubmission.h"

#include <QDebug>

#include "backend/InBackground.h"
#include "feedback/client/FeedBackApi.h"
#include "feedback/client/LogUpload.h"
#include "feedback/client/SuggestionFile.h"
#include "feedback/rating/ScoreFacts.h"

ScoreSubmission::ScoreSubmission(const ProgramRef& program, const QString& appName, const ScoreFacts* facts,
                                 QObject* parent)
    : QObject(parent),
      m_program(program),
      m_appName(appName),
      m_facts(facts),
      m_suggestionDirectory(LogUpload::SuggestionDirectory) {}

ScoreSubmission::~ScoreSubmission() = default;

AppScoreRequest ScoreSubmission::request(int score) const {
    return {score, m_appName, m_facts->appVersion(), {}};
}

void ScoreSubmission::submit(const Rating& rating) {
    if (m_step != Step::Idle)
        return;
    m_rating = rating;
    m_isWhole = true;
    m_work = std::make_unique<QObject>();
    setStep(Step::Collecting);
    if (m_facts->isReady())
        onFacts();
    else
        connect(m_facts, &ScoreFacts::ready, m_work.get(), [this] { onFacts(); });
}

void ScoreSubmission::onFacts() {
    if (!m_rating.withConfiguration)
        send({});
    else if (m_rating.suggestion.trimmed().isEmpty())
        upload(nullptr);
    else
        writeSuggestion();
}

/// A file that is ready only after the rating was cancelled is removed with the result.
void ScoreSubmission::writeSuggestion() {
    setStep(Step::Uploading);
    const QString name = SuggestionFile::nameFor(m_appName, QDateTime::currentDateTime());
    inBackground(
        m_work.get(),
        [directory = m_suggestionDirectory, name, text = m_rating.suggestion] {
            return SuggestionFile::write(directory, name, text);
        },
        [this](const std::shared_ptr<SuggestionFile>& suggestion) {
            m_isWhole = suggestion != nullptr;
            upload(suggestion);
        });
}

void ScoreSubmission::upload(const std::shared_ptr<SuggestionFile>& suggestion) {
    setStep(Step::Uploading);
    m_suggestion = suggestion;
    auto* upload = new LogUpload(m_work.get());
    upload->setSuggestionDirectory(suggestion ? suggestion->directory() : m_suggestionDirectory);
    connect(upload, &LogUpload::finished, m_work.get(), [this](const QString& key) {
        m_suggestion.reset();
        m_isWhole = m_isWhole && !key.isEmpty();
        send(key);
    });
    upload->uploadConfiguration(m_program.bottle);
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
        Q_EMIT finished(ok, desc, m_isWhole);
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
