#include "feedback/rating/ApplyScoreDialog.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QShowEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "feedback/client/FeedBackApi.h"
#include "feedback/rating/ScoreFacts.h"
#include "feedback/rating/SentRating.h"
#include "feedback/rating/scoreContainer.h"
#include "feedback/widgets/SentPreview.h"
#include "feedback/widgets/StatusLine.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "programs/ProgramIcons.h"
#include "widgets/LimitedTextEdit.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;
using Step = ScoreSubmission::Step;

namespace {

constexpr int LongestSuggestion = 500;
constexpr int LongestDesc = 200;
constexpr int TitleLines = 2, MeaningLines = 2;
constexpr int SuggestionHeight = 96;
constexpr int ShortMessageMs = 4000, LongMessageMs = 8000;
enum Page { FormPage, SentPageIndex };

}  // namespace

ApplyScoreDialog::ApplyScoreDialog(const Program& program, QWidget* parent)
    : Dialog(parent),
      m_program(program),
      m_hasService(ReportAccess::current().canSign()),
      m_facts(new ScoreFacts(program.ref, program.name, this)),
      m_submission(new ScoreSubmission(program.ref, m_facts, this)),
      m_pages(new QStackedWidget),
      m_icon(new Label(Label::Body)),
      m_stars(new scoreContainer),
      m_meaning(new Label(Label::Secondary)),
      m_status(new StatusLine) {
    setObjectName("applyscore_dialog");
    setAccessibleName("applyscore_dialog");
    setTitle(program.name);
    setTitleLines(TitleLines);
    setFixedWidth(Tokens::DialogMaxWidth);
    m_pages->addWidget(makeForm());
    if (m_hasService)
        m_pages->addWidget(makeSentPage());
    addContent(m_pages);
    m_status->setObjectName("applyscore_dialog_status");
    auto* foot = new QWidget;
    auto* row = new QHBoxLayout(foot);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Tokens::Space12);
    row->addWidget(m_status, 1);
    if (m_hasService) {
        m_turn = new QPushButton;
        m_turn->setObjectName("applyscore_dialog_turn_btn");
        m_turn->setAutoDefault(false);
        setButtonKind(m_turn, ButtonKind::Quiet);
        connect(m_turn, &QPushButton::clicked, this,
                [this] { showSentPage(m_pages->currentIndex() == FormPage); });
        row->addWidget(m_turn);
    }
    addContent(foot);
    button(addButton(tr("Cancel")))->setObjectName("applyscore_dialog_cancel_btn");
    m_submit = addButton(tr("Submit"), true, ButtonRecommend);
    button(m_submit)->setObjectName("applyscore_dialog_submit_btn");
    setOnButtonClickedClose(false);
    connect(this, &Dialog::buttonClicked, this, [this](int index) {
        if (index == m_submit)
            submitConfig();
        else
            reject();
    });
    connect(m_submission, &ScoreSubmission::stepChanged, this, &ApplyScoreDialog::updateState);
    connect(m_submission, &ScoreSubmission::finished, this, &ApplyScoreDialog::onFinished);
    connect(m_facts, &ScoreFacts::ready, this, &ApplyScoreDialog::updateSentPage);
    connect(ProgramIcons::instance(), &ProgramIcons::ready, this, [this](const QString& file) {
        if (file == m_program.icon)
            showIcon();
    });
    showIcon();
    showSentPage(false);
    if (m_hasService)
        m_facts->collect();
}

ApplyScoreDialog* ApplyScoreDialog::openFor(const Program& program, int score, QWidget* over) {
    auto* dialog = new ApplyScoreDialog(program, over);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->m_stars->choose(score);
    dialog->open();
    return dialog;
}

QString ApplyScoreDialog::textOf(int score) {
    switch (score) {
        case 1:
            return tr(
                "Awful performance in Stability and smoothness, almost impossible to use, badl user "
                "experience.");
        case 2:
            return tr("Occasional flashing and lagging, obvious obstacles to use, poor user experience.");
        case 3:
            return tr(
                "Occasional flashing and lagging, occasional problems, but generally usable, average "
                "user experience.");
        case 4:
            return tr(
                "Occasional flashing, most functions perform well, occasional glitches, but overall "
                "stable and reliable, good user experience.");
        case 5:
            return tr(
                "App runs with excellent performance, stable and reliable, no obstacles to use, "
                "excellent user experience.");
        default:
            return {};
    }
}

QWidget* ApplyScoreDialog::makeForm() {
    auto* form = new QWidget;
    form->setObjectName("applyscore_dialog_content");
    m_icon->setObjectName("applyscore_dialog_appicon");
    m_icon->setAccessibleName(tr("Icon of %1").arg(m_program.name));
    m_icon->setFixedSize(Tokens::IconTile, Tokens::IconTile);
    auto* layout = new QVBoxLayout(form);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_icon, 0, Qt::AlignHCenter);
    layout->addWidget(makeScoreArea());
    if (m_hasService) {
        layout->addWidget(makeSuggestion());
    } else {
        auto* kept =
            new Label(ReportAccess::current().whyNot() + ' ' + tr("Your rating is kept on this computer."),
                      Label::Secondary);
        kept->setObjectName("applyscore_dialog_no_service");
        kept->setAlignment(Qt::AlignHCenter);
        kept->setWordWrap(true);
        layout->addWidget(kept);
    }
    layout->addStretch();
    return form;
}

QWidget* ApplyScoreDialog::makeScoreArea() {
    auto* area = new QWidget;
    area->setObjectName("applyscore_dialog_score_area");
    auto* invitation = new Label(tr("We invite you to rate the current operation state:"));
    invitation->setAlignment(Qt::AlignHCenter);
    m_stars->setObjectName("applyscore_dialog_score_container");
    m_stars->setAccessibleName(invitation->text());
    m_meaning->setObjectName("applyscore_dialog_score_text");
    m_meaning->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_meaning->setWordWrap(true);
    m_meaning->setFixedHeight(MeaningLines * m_meaning->fontMetrics().lineSpacing());
    auto* layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space8);
    layout->addWidget(invitation);
    layout->addWidget(m_stars);
    layout->addWidget(m_meaning);
    connect(m_stars, &scoreContainer::starClick, this, [this](int index) {
        m_meaning->setText(textOf(index));
        updateState();
    });
    return area;
}

QWidget* ApplyScoreDialog::makeSuggestion() {
    auto* area = new QWidget;
    auto* title = new Label(tr("You may leave your valuable suggestions:"));
    m_suggestion = new LimitedTextEdit(LongestSuggestion);
    m_suggestion->setObjectName("applyscore_dialog_suggestion_edit");
    m_suggestion->setAccessibleName(title->text());
    m_suggestion->setFixedHeight(SuggestionHeight);
    title->setBuddy(m_suggestion);
    auto* counter = new Label(tr("(0/500)"), Label::Small);
    counter->setObjectName("applyscore_dialog_counter");
    counter->setTextRole(Theme::Secondary);
    counter->setAlignment(Qt::AlignRight);
    m_agrees =
        new QCheckBox(tr("I agree to upload of application configuration is only used to\nimprove the "
                         "success rate of the application."));
    m_agrees->setObjectName("applyscore_dialog_agree_upload_btn");
    m_agrees->setAccessibleName(QString(m_agrees->text()).replace('\n', ' '));
    auto* layout = new QVBoxLayout(area);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addWidget(title);
    layout->addWidget(m_suggestion);
    layout->addWidget(counter);
    layout->addWidget(m_agrees);
    connect(m_suggestion, &LimitedTextEdit::edited, this, [this, counter] {
        counter->setText(tr("(%1/500)").arg(m_suggestion->toPlainText().size()));
        updateState();
    });
    connect(m_agrees, &QCheckBox::toggled, this, &ApplyScoreDialog::updateState);
    return area;
}

QWidget* ApplyScoreDialog::makeSentPage() {
    auto* page = new QWidget;
    auto* text = new Label(SentRating::introduction(), Label::Secondary);
    text->setWordWrap(true);
    m_preview = new SentPreview;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(text);
    layout->addWidget(m_preview, 1);
    return page;
}

void ApplyScoreDialog::showIcon() {
    QPixmap picture =
        ProgramIcons::instance()->picture(m_program.icon, qRound(Tokens::IconTile * devicePixelRatioF()));
    picture.setDevicePixelRatio(devicePixelRatioF());
    m_icon->setPixmap(picture);
}

void ApplyScoreDialog::showSentPage(bool isShown) {
    m_pages->setCurrentIndex(isShown ? SentPageIndex : FormPage);
    if (m_turn)
        m_turn->setText(isShown ? tr("Back") : tr("What is sent"));
    if (isShown) {
        updateSentPage();
        m_preview->setFocus(Qt::OtherFocusReason);
    }
    updateState();
}

/// The configuration is copied when it is to be shown for the first time. Where there was none, the next look
/// asks again.
void ApplyScoreDialog::updateSentPage() {
    if (m_pages->currentIndex() != SentPageIndex)
        return;
    const bool agrees = m_agrees->isChecked();
    if (agrees && !m_copies && !m_areCopiesAsked) {
        m_areCopiesAsked = true;
        LogUpload::collectConfiguration(m_program.ref.bottle, this, [this](const LogUpload::Copies& copies) {
            m_copies = copies;
            updateSentPage();
            m_areCopiesAsked = false;
        });
    }
    m_preview->setParts(SentRating::parts(m_submission->request(m_stars->score()), m_facts->versions(),
                                          agrees ? m_suggestion->toPlainText() : QString(),
                                          agrees ? m_copies : nullptr));
}

void ApplyScoreDialog::submitConfig() {
    const int score = m_stars->score();
    if (score == 0 || m_submission->step() != Step::Idle)
        return;
    if (!m_hasService) {
        Q_EMIT submit(score);
        accept();
        return;
    }
    m_submission->submit({score, m_suggestion->toPlainText(), m_agrees->isChecked(), m_copies});
    setFocus();  // on "Cancel" a second Return would end it
}

void ApplyScoreDialog::reject() {
    if (m_submission->step() == Step::Idle)
        Dialog::reject();
    else
        m_submission->cancel();  // what was typed stays
}

void ApplyScoreDialog::showEvent(QShowEvent* event) {
    Dialog::showEvent(event);
    if (!event->spontaneous())
        m_stars->setFocus(Qt::OtherFocusReason);
}

void ApplyScoreDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_pages->currentIndex() == SentPageIndex &&
        m_submission->step() == Step::Idle)
        showSentPage(false);
    else
        Dialog::keyPressEvent(event);
}

void ApplyScoreDialog::updateState() {
    const bool isIdle = m_submission->step() == Step::Idle;
    m_pages->setEnabled(isIdle);
    button(m_submit)->setEnabled(isIdle && m_stars->score() > 0);
    showStatus(statusText());
}

QString ApplyScoreDialog::statusText() const {
    switch (m_submission->step()) {
        case Step::Collecting:
            return tr("Collecting what is sent…");
        case Step::Uploading:
            return tr("Uploading the configuration…");
        case Step::Sending:
            return tr("Sending the rating…");
        case Step::Idle:
            break;
    }
    const bool hasSuggestion = m_suggestion && !m_suggestion->toPlainText().trimmed().isEmpty();
    return hasSuggestion && !m_agrees->isChecked() ? tr("Suggestions are sent with the configuration only")
                                                   : QString();
}

void ApplyScoreDialog::showStatus(const QString& text, bool isError) {
    m_status->tell(text, isError ? StatusLine::Kind::Error : StatusLine::Kind::Plain);
}

QString ApplyScoreDialog::textOf(ScoreSubmission::MissingParts missing) {
    using Missing = ScoreSubmission::Missing;
    if (!missing)
        return tr("Successfully");
    if (!missing.testFlag(Missing::Suggestion))
        return tr("The rating was sent, but the configuration could not be uploaded");
    if (!missing.testFlag(Missing::Configuration))
        return tr("The rating was sent, but the suggestion could not be uploaded");
    return tr("The rating was sent, but the configuration and the suggestion could not be uploaded");
}

void ApplyScoreDialog::onFinished(bool ok, const QString& desc, ScoreSubmission::MissingParts missing) {
    if (ok) {
        if (parentWidget())
            FloatingMessage::show(parentWidget(), QIcon(widgetImage(missing ? "warning.svg" : "ok.svg")),
                                  textOf(missing), missing ? LongMessageMs : ShortMessageMs);
        Q_EMIT submit(m_stars->score());
        accept();
        return;
    }
    if (!desc.isEmpty())
        showStatus(desc.simplified().left(LongestDesc), true);
    button(m_submit)->setFocus();  // first: its ring would lie over the message
    FloatingMessage::show(this, QIcon(widgetImage("warning.svg")),
                          tr("Failed to submit, please check your network"));
}
