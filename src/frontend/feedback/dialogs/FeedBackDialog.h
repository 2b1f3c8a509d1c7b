#pragma once

#include "backend/ProgramRef.h"
#include "feedback/dialogs/FeedbackForm.h"
#include "feedback/dialogs/ReportPicture.h"
#include "fenk/window/Dialog.h"

class FeedbackRows;
class FeedbackSubmission;
class ImageUploads;
class QPushButton;
class QStackedWidget;
class ReportFacts;
class ReportSaver;
class SentPage;
class StatusLine;

/// Reports a problem with a program to the report service: a form with pictures, and a page on which the user
/// reads all that will be sent. Where no service is configured, and where one does not answer, the report can
/// be saved to a file instead. Nothing waits for the service, and closing the dialog ends what is under way.
class FeedBackDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    /// For a problem with this application itself.
    explicit FeedBackDialog(QWidget* parent = nullptr) : FeedBackDialog(ProgramRef(), parent) {}
    explicit FeedBackDialog(const ProgramRef& program, QWidget* parent = nullptr);
    ~FeedBackDialog() override;

    /// These fill fields that the user has left empty.
    void setAppName(const QString& name);
    void setAppVersion(const QString& version);
    void setDownloadUrl(const QString& url);

    void reject() override;

public Q_SLOTS:
    void onAddImageButtonClicked();
    void updateSubmitButtonStatus();
    void slotsSubmitButtonClicked();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void buildContent();
    void buildButtons();
    void connectParts();
    void fetchTypes();
    void findVersion();
    bool isBusy() const;
    bool checkContact();
    void askWhereToSave();
    void save();
    void onSubmitted(bool ok, const QString& desc, bool isWhole);
    void onSaved(const QString& path, const QString& errorText);
    void refuse(const QVector<ReportPicture>& pictures);
    void showSentPage(bool isShown);
    void updateSentPage();
    /// What matters to a report that is saved: the pictures need not be uploaded.
    FeedbackRules::Images readingState() const;
    QString statusText() const;
    void warn(const QString& text);
    void closeWith(const QString& text, int ms, const char* icon = "ok.svg");

    const ProgramRef m_program;
    const bool m_hasService;
    ReportFacts* m_facts;
    ImageUploads* m_uploads;
    FeedbackSubmission* m_submission;
    ReportSaver* m_saver;
    FeedbackRows* m_rows;
    SentPage* m_sentPage;
    QStackedWidget* m_pages = nullptr;
    StatusLine* m_status;
    QPushButton* m_turn;       ///< between the form and the page
    QString m_savePath;        ///< of the save under way; empty when there is none
    bool m_hasFailed = false;  ///< the service has not answered
    int m_save = 0;            ///< indices of the buttons
    int m_submit = 0;
};
