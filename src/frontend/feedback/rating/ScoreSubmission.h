#pragma once

#include <QObject>
#include <memory>

#include "backend/ProgramRef.h"
#include "feedback/client/LogUpload.h"

class ScoreFacts;
class SuggestionFile;
struct AppScoreRequest;

/// Sends one rating: waits for the facts, uploads the configuration and the suggestion when the user agrees,
/// and submits the score. Ends in exactly one finished() for each submit(), unless it is cancelled or
/// deleted, which also ends the upload and the request and removes the suggestion's file. GUI thread.
class ScoreSubmission : public QObject {
    Q_OBJECT
public:
    enum class Step { Idle, Collecting, Uploading, Sending };
    /// What the user wanted to be sent, but the score went without.
    enum class Missing { Configuration = 1, Suggestion = 2 };
    Q_DECLARE_FLAGS(MissingParts, Missing)

    struct Rating {
        int score = 0;
        QString suggestion;
        bool withConfiguration = false;   ///< also the suggestion goes only then
        LogUpload::Copies configuration;  ///< that the user has read; null: it is copied now
    };

    /// The facts must outlive this object.
    ScoreSubmission(const ProgramRef& program, const ScoreFacts* facts, QObject* parent = nullptr);
    ~ScoreSubmission() override;

    /// Where the suggestion waits for its upload, instead of SuggestionFile::CommonDirectory.
    void setSuggestionDirectory(const QString& path) { m_suggestionDirectory = path; }

    /// What is sent without a configuration.
    AppScoreRequest request(int score) const;
    /// Does nothing while a rating is being sent.
    void submit(const Rating& rating);
    void cancel();
    Step step() const { return m_step; }

Q_SIGNALS:
    void stepChanged();
    /// `desc` says why not; untrusted; may be empty.
    void finished(bool ok, const QString& desc, MissingParts missing);

private:
    void setStep(Step step);
    void onFacts();
    void writeSuggestion();
    void upload(const std::shared_ptr<SuggestionFile>& suggestion);
    void send(const QString& configurationKey);

    const ProgramRef m_program;
    const ScoreFacts* m_facts;
    QString m_suggestionDirectory;
    Rating m_rating;
    Step m_step = Step::Idle;
    MissingParts m_missing;
    std::unique_ptr<QObject> m_work;  ///< owns what is under way
    std::shared_ptr<SuggestionFile> m_suggestion;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ScoreSubmission::MissingParts)
