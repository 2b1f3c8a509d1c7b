#pragma once

#include <QObject>
#include <memory>

#include "backend/ProgramRef.h"

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

    struct Rating {
        int score = 0;
        QString suggestion;
        bool withConfiguration = false;  ///< also the suggestion goes only then
    };

    /// The facts must outlive this object.
    ScoreSubmission(const ProgramRef& program, const QString& appName, const ScoreFacts* facts,
                    QObject* parent = nullptr);
    ~ScoreSubmission() override;

    /// Where the suggestion waits for its upload, instead of LogUpload::SuggestionDirectory.
    void setSuggestionDirectory(const QString& path) { m_suggestionDirectory = path; }
    const QString& suggestionDirectory() const { return m_suggestionDirectory; }

    /// What is sent without a configuration.
    AppScoreRequest request(int score) const;
    /// Does nothing while a rating is being sent.
    void submit(const Rating& rating);
    void cancel();
    Step step() const { return m_step; }

Q_SIGNALS:
    void stepChanged();
    /// `desc` says why not; untrusted; may be empty. `isWhole` is false when the configuration could not be
    /// uploaded; the score goes without it.
    void finished(bool ok, const QString& desc, bool isWhole);

private:
    void setStep(Step step);
    void onFacts();
    void writeSuggestion();
    void upload(const std::shared_ptr<SuggestionFile>& suggestion);
    void send(const QString& configurationKey);

    const ProgramRef m_program;
    const QString m_appName;
    const ScoreFacts* m_facts;
    QString m_suggestionDirectory;
    Rating m_rating;
    Step m_step = Step::Idle;
    bool m_isWhole = true;
    std::unique_ptr<QObject> m_work;  ///< owns what is under way
    std::shared_ptr<SuggestionFile> m_suggestion;
};
