#pragma once

#include "feedback/rating/ScoreSubmission.h"
#include "fenk/window/Dialog.h"
#include "programs/Program.h"

class LimitedTextEdit;
class QCheckBox;
class QPushButton;
class QStackedWidget;
class ScoreFacts;
class SentPreview;
class StatusLine;
class scoreContainer;

namespace Fenk {
class Label;
}

/// Asks how well a program runs, in stars and words, and sends that. The suggestion goes only together with
/// the bottle's configuration. The user can read all of it before on the page "What is sent". Where no report
/// service is configured, the dialog says so and takes the stars alone, which then stay on this computer.
/// Nothing is sent before "Submit"; Escape and "Cancel" end what is under way first, and the dialog only
/// then.
class ApplyScoreDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    explicit ApplyScoreDialog(const Program& program, QWidget* parent = nullptr);

    /// Opens a dialog that deletes itself, with these stars chosen: 1 to 5, or 0 for none.
    static ApplyScoreDialog* openFor(const Program& program, int score, QWidget* over);

    /// What a rating of 1 to 5 means; empty for others.
    static QString textOf(int score);

Q_SIGNALS:
    /// The rating was sent, or there is no service to send it to: whoever opened the dialog stores it in the
    /// bottle. The dialog closes.
    void submit(int score);

public Q_SLOTS:
    /// Sends the rating, with the configuration when the user has agreed to that.
    void submitConfig();
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* makeForm();
    QWidget* makeScoreArea();
    QWidget* makeSuggestion();
    QWidget* makeSentPage();
    void showIcon();
    void showSentPage(bool isShown);
    void updateSentPage();
    void updateState();
    QString statusText() const;
    void showStatus(const QString& text, bool isError = false);
    static QString textOf(ScoreSubmission::MissingParts missing);
    void onFinished(bool ok, const QString& desc, ScoreSubmission::MissingParts missing);

    const Program m_program;
    const bool m_hasService;
    ScoreFacts* m_facts;
    ScoreSubmission* m_submission;
    LogUpload::Copies m_copies;  ///< of the configuration, once shown: these are sent
    bool m_areCopiesAsked = false;
    QStackedWidget* m_pages;
    Fenk::Label* m_icon;
    scoreContainer* m_stars;
    Fenk::Label* m_meaning;
    LimitedTextEdit* m_suggestion = nullptr;  ///< these are null without a service
    QCheckBox* m_agrees = nullptr;
    SentPreview* m_preview = nullptr;
    QPushButton* m_turn = nullptr;
    StatusLine* m_status;
    int m_submit = 0;  ///< index of the button
};
