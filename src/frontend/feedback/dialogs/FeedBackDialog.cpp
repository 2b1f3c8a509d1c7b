#include "feedback/dialogs/FeedBackDialog.h"

#include <QDate>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
#include <QStandardPaths>

#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "feedback/client/FeedBackApi.h"
#include "feedback/dialogs/FeedbackRows.h"
#include "feedback/dialogs/FeedbackSubmission.h"
#include "feedback/dialogs/FeedbackTexts.h"
#include "feedback/dialogs/ImageUploads.h"
#include "feedback/dialogs/IssueTypeChoice.h"
#include "feedback/dialogs/ReportFacts.h"
#include "feedback/dialogs/ReportSaver.h"
#include "feedback/dialogs/SentPage.h"
#include "feedback/dialogs/UploadedImages.h"
#include "feedback/widgets/StatusLine.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "launch/inspection/ExeFileInfo.h"
#include "widgets/FileChoice.h"
#include "widgets/PageArea.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;
using FeedbackRules::Problem;
using Step = FeedbackSubmission::Step;

namespace {

constexpr QSize Size(640, 660);
constexpr qreal ShareOfScreen = 0.9;
constexpr int LongMs = 8000;  ///< long enough to read a path
constexpr int DoneMs = 4000;
constexpr int LongestDesc = 200;
enum Page { FormPage, SentPageIndex };

}  // namespace

FeedBackDialog::FeedBackDialog(const ProgramRef& program, QWidget* parent)
    : Dialog(parent),
      m_program(program),
      m_hasService(ReportAccess::current().canSign()),
      m_facts(new ReportFacts(program.bottle, this)),
      m_uploads(new ImageUploads(m_hasService, this)),
      m_submission(new FeedbackSubmission(m_facts, this)),
      m_saver(new ReportSaver(this)),
      m_rows(new FeedbackRows(m_uploads, m_hasService)),
      m_sentPage(new SentPage(m_hasService, !program.bottle.isEmpty())),
      m_status(new StatusLine),
      m_turn(new QPushButton) {
    setObjectName("feedback_dialog");
    setAccessibleName("feedback_dialog");
    setTitle(tr("Feedback"));
    if (!m_hasService)
        setMessage(
            tr("This version has no address to send reports to. Save the report to a file, and pass "
               "that on to whoever can help you."));
    buildContent();
    buildButtons();
    connectParts();
    const QSize screen = (parent ? parent->screen() : this->screen())->availableSize() * ShareOfScreen;
    setFixedSize(Size.boundedTo(screen));
    showSentPage(false);
    if (m_hasService)
        fetchTypes();
    if (!m_program.uuid.isEmpty())
        findVersion();
}

FeedBackDialog::~FeedBackDialog() {
    delete m_submission;  // before the facts that it uses
}

void FeedBackDialog::buildContent() {
    auto* area = PageArea::around(m_rows);
    area->setObjectName("feedback_scrollarea");
    m_pages = new QStackedWidget;
    m_pages->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_pages->addWidget(area);
    m_pages->addWidget(m_sentPage);
    m_status->setObjectName("feedback_status");
    m_turn->setObjectName("feedback_turnbtn");
    m_turn->setAutoDefault(false);
    setButtonKind(m_turn, ButtonKind::Quiet);
    auto* foot = new QWidget;
    auto* row = new QHBoxLayout(foot);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Tokens::Space12);
    row->addWidget(m_status, 1);
    row->addWidget(m_turn);
    addContent(m_pages);
    addContent(foot);
}

void FeedBackDialog::buildButtons() {
    const int cancel = addButton(tr("Cancel"));
    button(cancel)->setObjectName("feedback_cancelbtn");
    m_save = addButton(tr("Save Report…"), !m_hasService, m_hasService ? ButtonNormal : ButtonRecommend);
    button(m_save)->setObjectName("feedback_savebtn");
    button(m_save)->setVisible(!m_hasService);
    setOnButtonClickedClose(false);
    if (m_hasService) {
        m_submit = addButton(tr("Submit"), true, ButtonRecommend);
        button(m_submit)->setObjectName("feedback_submitbtn");
    }
    connect(this, &Dialog::buttonClicked, this, [this](int index) {
        if (index == m_save)
            askWhereToSave();
        else if (m_hasService && index == m_submit)
            slotsSubmitButtonClicked();
        else
            reject();
    });
}

void FeedBackDialog::connectParts() {
    connect(m_rows, &FeedbackRows::changed, this, &FeedBackDialog::updateSubmitButtonStatus);
    connect(m_rows->types(), &IssueTypeChoice::retryWanted, this, &FeedBackDialog::fetchTypes);
    connect(m_rows->images(), &UploadedImages::addWanted, this, &FeedBackDialog::onAddImageButtonClicked);
    connect(m_uploads, &ImageUploads::refused, this, &FeedBackDialog::refuse);
    connect(m_uploads, &ImageUploads::uploadFailed, this,
            [this] { warn(tr("Image upload failed, please try again")); });
    connect(m_uploads, &ImageUploads::updated, this, [this] {
        updateSubmitButtonStatus();
        updateSentPage();
    });
    connect(m_turn, &QPushButton::clicked, this,
            [this] { showSentPage(m_pages->currentIndex() == FormPage); });
    connect(m_sentPage, &SentPage::changed, this, &FeedBackDialog::updateSentPage);
    connect(m_facts, &ReportFacts::ready, this, [this] {
        updateSubmitButtonStatus();
        updateSentPage();
        if (!m_savePath.isEmpty())
            save();
    });
    connect(m_submission, &FeedbackSubmission::stepChanged, this, &FeedBackDialog::updateSubmitButtonStatus);
    connect(m_submission, &FeedbackSubmission::uploadProgress, this, [this](int percent) {
        m_status->tell(tr("Uploading the logs… %1 %").arg(percent), StatusLine::Kind::Progress);
    });
    connect(m_submission, &FeedbackSubmission::finished, this, &FeedBackDialog::onSubmitted);
    connect(m_saver, &ReportSaver::finished, this, &FeedBackDialog::onSaved);
}

void FeedBackDialog::fetchTypes() {
    m_rows->types()->showLoading();
    auto* api = new FeedBackApi(this);
    api->getIssueTypes(this, [this, api](const QVector<IssueType>& types) {
        api->deleteLater();
        m_rows->types()->setTypes(types);
        m_hasFailed = !m_rows->types()->hasTypes();
        updateSubmitButtonStatus();
        updateSentPage();
    });
}

void FeedBackDialog::findVersion() {
    BottlesConfig::instance()->watchBottle(m_program.bottle, this, [this](const BusResult& result) {
        inBackground(
            this, [bottle = result.object(), uuid = m_program.uuid] { return programVersion(bottle, uuid); },
            [this](const QString& version) { setAppVersion(version); });
    });
}

void FeedBackDialog::setAppName(const QString& name) {
    m_rows->proposeAppName(name);
}

void FeedBackDialog::setAppVersion(const QString& version) {
    m_rows->proposeAppVersion(version);
}

void FeedBackDialog::setDownloadUrl(const QString& url) {
    m_rows->proposeDownloadUrl(url);
}

void FeedBackDialog::showEvent(QShowEvent* event) {
    Dialog::showEvent(event);
    if (!event->spontaneous())
        m_rows->setFocus(Qt::OtherFocusReason);
}

void FeedBackDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_pages->currentIndex() == SentPageIndex && !isBusy())
        showSentPage(false);
    else
        Dialog::keyPressEvent(event);
}

bool FeedBackDialog::isBusy() const {
    return m_submission->step() != Step::Idle || !m_savePath.isEmpty();
}

/// The first time it ends what is under way, so that nothing that was typed is lost.
void FeedBackDialog::reject() {
    if (!isBusy()) {
        Dialog::reject();
        return;
    }
    m_savePath.clear();
    m_saver->cancel();
    m_submission->cancel();
    updateSubmitButtonStatus();
}

void FeedBackDialog::onAddImageButtonClicked() {
    QFileDialog* dialog = FileChoice::make(FileChoice::Kind::Picture, this, tr("Select Image"),
                                           QStandardPaths::writableLocation(QStandardPaths::PicturesLocation),
                                           tr("Image Files (*.png *.jpg *.jpeg *.gif)"));
    dialog->setFileMode(QFileDialog::ExistingFiles);
    connect(dialog, &QFileDialog::filesSelected, m_uploads, &ImageUploads::add);
    dialog->open();
}

void FeedBackDialog::refuse(const QVector<ReportPicture>& pictures) {
    QStringList texts;
    for (const ReportPicture& picture : pictures)
        texts += FeedbackTexts::refusalText(picture);
    warn(texts.join('\n'));
}

void FeedBackDialog::updateSubmitButtonStatus() {
    const FeedbackForm form = m_rows->form();
    const bool isIdle = !isBusy();
    m_rows->setEnabled(isIdle);
    m_sentPage->setEnabled(isIdle);
    button(m_save)->setVisible(!m_hasService || m_hasFailed);
    button(m_save)->setEnabled(isIdle &&
                               FeedbackRules::problemOf(form, false, readingState()) == Problem::None);
    if (m_hasService)
        button(m_submit)->setEnabled(isIdle && FeedbackRules::problemOf(form, true, m_uploads->state()) ==
                                                   Problem::None);
    m_status->tell(statusText());
}

FeedbackRules::Images FeedBackDialog::readingState() const {
    return m_uploads->isReading() ? FeedbackRules::Images::UnderWay : FeedbackRules::Images::Ready;
}

QString FeedBackDialog::statusText() const {
    if (!m_savePath.isEmpty())
        return tr("Saving the report…");
    if (m_submission->step() != Step::Idle)
        return FeedbackTexts::stepText(m_submission->step());
    const bool needsType = m_hasService && m_rows->types()->hasTypes();
    const Problem problem = FeedbackRules::problemOf(m_rows->form(), needsType,
                                                     m_hasService ? m_uploads->state() : readingState());
    if (problem != Problem::None)
        return FeedbackTexts::problemText(problem);
    if (m_pages->currentIndex() == SentPageIndex && !m_facts->isReady())
        return FeedbackTexts::stepText(Step::Collecting);
    if (m_pages->currentIndex() == SentPageIndex && m_facts->lacksLogs())
        return tr("There are no logs: they could not be collected");
    return m_hasFailed ? tr("You can save the report to a file instead") : QString();
}

bool FeedBackDialog::checkContact() {
    if (FeedbackRules::isContact(m_rows->form().contact))
        return true;
    showSentPage(false);
    m_rows->contact()->showAlertMessage(tr("Please enter contact with valid format"), 0);
    m_rows->contact()->setFocus(Qt::OtherFocusReason);
    auto* area = findChild<QScrollArea*>("feedback_scrollarea");
    area->ensureWidgetVisible(m_rows->contact());
    return false;
}

void FeedBackDialog::slotsSubmitButtonClicked() {
    if (isBusy() || !m_hasService || !button(m_submit)->isEnabled() || !checkContact())
        return;
    m_submission->submit(m_rows->form(), m_uploads->keys(), m_sentPage->takesLogs());
    setFocus();  // on "Cancel" a second Return would end it
}

void FeedBackDialog::onSubmitted(bool ok, const QString& desc, bool isWhole) {
    if (ok) {
        if (isWhole)
            closeWith(tr("Successfully"), DoneMs);
        else
            closeWith(tr("The report was sent, but the logs could not be collected or uploaded"), LongMs,
                      "warning.svg");
        return;
    }
    m_hasFailed = true;
    updateSubmitButtonStatus();
    updateSentPage();
    if (!desc.isEmpty())
        m_status->tell(desc.simplified().left(LongestDesc), StatusLine::Kind::Error);
    warn(tr("Failed to submit, please check your network"));
    button(m_submit)->setFocus();
}

void FeedBackDialog::askWhereToSave() {
    if (isBusy() || !checkContact())
        return;
    const QString name = QString("cellarix-report-%1.tar.gz").arg(QDate::currentDate().toString(Qt::ISODate));
    QFileDialog* dialog = FileChoice::make(
        FileChoice::Kind::Report, this, tr("Save Report"),
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), tr("Archives (*.tar.gz)"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setDefaultSuffix("tar.gz");
    dialog->selectFile(name);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& path) {
        m_savePath = path;
        updateSubmitButtonStatus();
        setFocus();
        if (m_facts->isReady())
            save();
        else
            m_facts->collect();  // and then save()
    });
    dialog->open();
}

void FeedBackDialog::save() {
    const bool hasLogs = m_sentPage->takesLogs() && m_facts->logs();
    ReportSaver::Report report;
    report.pictures = m_uploads->copies();
    if (hasLogs)
        report.logs = m_facts->logFiles();
    report.json = savedReport(m_rows->form(), *m_facts, report.pictures, hasLogs);
    m_saver->save(m_savePath, report, {m_facts->logs(), m_uploads->directory()});
}

void FeedBackDialog::onSaved(const QString& path, const QString& errorText) {
    m_savePath.clear();
    updateSubmitButtonStatus();
    if (!errorText.isEmpty()) {
        m_status->tell(errorText, StatusLine::Kind::Error);
        warn(errorText);
        button(m_save)->setFocus();
        return;
    }
    // The file manager may have to be started first.
    callServiceAsync(
        qApp, [path] { DesktopUtils::showInFileManager(path); }, [] {});
    closeWith(tr("The report is in %1").arg(path), LongMs);
}

void FeedBackDialog::showSentPage(bool isShown) {
    m_pages->setCurrentIndex(isShown ? SentPageIndex : FormPage);
    m_turn->setText(isShown        ? tr("Back to the form")
                    : m_hasService ? tr("What is sent")
                                   : tr("What is saved"));
    m_turn->setAccessibleName(m_turn->text());
    if (isShown) {
        m_facts->collect();
        updateSentPage();
        m_sentPage->setFocus(Qt::OtherFocusReason);
    }
    updateSubmitButtonStatus();
}

void FeedBackDialog::updateSentPage() {
    if (m_pages->currentIndex() == SentPageIndex)
        m_sentPage->update(m_rows->form(), *m_facts, *m_uploads, m_hasFailed);
}

void FeedBackDialog::warn(const QString& text) {
    FloatingMessage::show(this, QIcon(widgetImage("warning.svg")), text);
}

/// The message outlives the dialog.
void FeedBackDialog::closeWith(const QString& text, int ms, const char* icon) {
    if (parentWidget())
        FloatingMessage::show(parentWidget(), QIcon(widgetImage(icon)), text, ms);
    accept();
}
