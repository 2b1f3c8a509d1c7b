#include "feedback/dialogs/FeedBackDialog.h"

#include <QAccessible>
#include <QDate>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
#include <QStandardPaths>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"
#include "backend/WindowsPath.h"
#include "feedback/client/FeedBackApi.h"
#include "feedback/dialogs/FeedbackRows.h"
#include "feedback/dialogs/FeedbackSubmission.h"
#include "feedback/dialogs/ImageUploads.h"
#include "feedback/dialogs/IssueTypeChoice.h"
#include "feedback/dialogs/ReportFacts.h"
#include "feedback/dialogs/ReportSaver.h"
#include "feedback/dialogs/SentPage.h"
#include "feedback/dialogs/UploadedImages.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
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
constexpr int WrittenMs = 8000;  ///< long enough to read a path
constexpr int DoneMs = 4000;
constexpr int LongestDesc = 200;
enum Page { FormPage, SentPageIndex };

/// Reads the version block of the program's file.
QString versionOf(const QJsonObject& bottle, const QString& uuid) {
    const QJsonObject program = BottleRecord::programs(bottle).value(uuid).toObject();
    const QString path = ProgramRecord::path(program);
    if (path.isEmpty())
        return {};
    return readableVersion(peVersionInfo(
        WindowsPath::isWindowsPath(path) ? WindowsPath::toUnix(BottleRecord::path(bottle), path) : path));
}

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
      m_status(new Label(Label::Small)),
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

FeedBackDialog::~FeedBackDialog() = default;

void FeedBackDialog::buildContent() {
    auto* area = PageArea::around(m_rows);
    area->setObjectName("feedback_scrollarea");
    m_pages = new QStackedWidget;
    m_pages->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_pages->addWidget(area);
    m_pages->addWidget(m_sentPage);
    m_status->setObjectName("feedback_status");
    m_status->setElided(true);
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
    });
}

void FeedBackDialog::findVersion() {
    BottlesConfig::instance()->watchBottle(m_program.bottle, this, [this](const BusResult& result) {
        inBackground(
            this, [bottle = result.object(), uuid = m_program.uuid] { return versionOf(bottle, uuid); },
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

void FeedBackDialog::refuse(ReportPicture::Verdict verdict, const QString& name) {
    if (verdict == ReportPicture::Verdict::TooLarge)
        warn(tr("The image size exceeds 2M not being uploaded, please reselect the image"));
    else if (verdict == ReportPicture::Verdict::NoPicture)
        warn(tr("“%1” is not a picture of these kinds: jpg, jpeg, png, gif").arg(name));
    else
        warn(tr("“%1” cannot be read").arg(name));
}

void FeedBackDialog::updateSubmitButtonStatus() {
    const FeedbackForm form = m_rows->form();
    const bool isIdle = !isBusy();
    m_rows->setEnabled(isIdle);
    m_sentPage->setEnabled(isIdle);
    button(m_save)->setVisible(!m_hasService || m_hasFailed);
    button(m_save)->setEnabled(isIdle && FeedbackRules::problemOf(form, false, m_uploads->isReading()) ==
                                             Problem::None);
    if (m_hasService)
        button(m_submit)->setEnabled(
            isIdle && FeedbackRules::problemOf(form, true, m_uploads->isUnderWay()) == Problem::None);
    showStatus(statusText());
}

QString FeedBackDialog::statusText() const {
    if (!m_savePath.isEmpty())
        return tr("Saving the report…");
    switch (m_submission->step()) {
        case Step::Collecting:
            return tr("Collecting what is sent…");
        case Step::UploadingLogs:
            return tr("Uploading the logs…");
        case Step::Sending:
            return tr("Sending the report…");
        case Step::Idle:
            break;
    }
    const bool needsType = m_hasService && m_rows->types()->hasTypes();
    const bool isUnderWay = m_hasService ? m_uploads->isUnderWay() : m_uploads->isReading();
    switch (FeedbackRules::problemOf(m_rows->form(), needsType, isUnderWay)) {
        case Problem::NoType:
            return tr("Please select the issue type");
        case Problem::NoDescription:
            return tr("Please describe the problem");
        case Problem::LongDescription:
            return tr("The description has more than %1 characters").arg(FeedbackRules::MaximumDescription);
        case Problem::ImageUnderWay:
            return tr("The pictures are being uploaded…");
        case Problem::None:
            break;
    }
    if (m_pages->currentIndex() == SentPageIndex && !m_facts->isReady())
        return tr("Collecting what is sent…");
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

void FeedBackDialog::onSubmitted(bool ok, const QString& desc) {
    if (ok) {
        closeWith(tr("Successfully"), DoneMs);
        return;
    }
    m_hasFailed = true;
    updateSubmitButtonStatus();
    if (!desc.isEmpty())
        showStatus(desc.simplified().left(LongestDesc), true);
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
    for (const ImageUploads::Image& image : m_uploads->images())
        report.pictures += image.picture.copy;
    if (hasLogs)
        report.logs = m_facts->logFiles();
    report.json = savedReport(m_rows->form(), *m_facts, report.pictures, hasLogs);
    m_saver->save(m_savePath, report, {m_facts->logs(), m_uploads->directory()});
}

void FeedBackDialog::onSaved(const QString& path, const QString& errorText) {
    m_savePath.clear();
    updateSubmitButtonStatus();
    if (!errorText.isEmpty()) {
        showStatus(errorText, true);
        warn(errorText);
        button(m_save)->setFocus();
        return;
    }
    // The file manager may have to be started first.
    callServiceAsync(
        qApp, [path] { DesktopUtils::showInFileManager(path); }, [] {});
    closeWith(tr("The report is in %1").arg(path), WrittenMs);
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
        m_sentPage->update(m_rows->form(), *m_facts, *m_uploads);
}

void FeedBackDialog::showStatus(const QString& text, bool isError) {
    const bool isNew = text != m_status->text();
    m_status->setText(text);
    m_status->setTextRole(isError ? Theme::Danger : Theme::Secondary);
    if (text.isEmpty() || !isNew)
        return;
    QAccessibleEvent event(m_status, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void FeedBackDialog::warn(const QString& text) {
    FloatingMessage::show(this, QIcon(widgetImage("warning.svg")), text);
}

/// The message outlives the dialog.
void FeedBackDialog::closeWith(const QString& text, int ms) {
    if (parentWidget())
        FloatingMessage::show(parentWidget(), QIcon(widgetImage("ok.svg")), text, ms);
    accept();
}
