#include "packaging/AppConfigDialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QHBoxLayout>
#include <QRegularExpressionValidator>
#include <QScreen>
#include <QScrollArea>
#include <QShowEvent>
#include <QVBoxLayout>

#include "backend/InBackground.h"
#include "backend/ProgramRef.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/controls/SuggestButton.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/Dialog.h"
#include "packaging/config/MaintainerFields.h"
#include "packaging/config/PackageChecker.h"
#include "packaging/config/PackageFiles.h"
#include "packaging/config/ShowPackageCheckerWidget.h"
#include "packaging/contents/PackageContentsWidget.h"
#include "packaging/contents/PackageListing.h"
#include "packaging/driver/CompressionChoice.h"
#include "packaging/driver/DoPackageDialog.h"

using namespace Fenk;

namespace {

constexpr int DialogWidth = 500;
constexpr double ShareOfScreen = 0.9;
constexpr int AroundForm = 128;  ///< title and buttons
constexpr int TypingMs = 600;    ///< before a text that is being typed is called wrong
const char Amd64[] = "amd64";
const char Arm64[] = "arm64";

template <class Control>
Control* named(Control* control, const char* name) {
    control->setObjectName(name);
    control->setAccessibleName(name);
    return control;
}

}  // namespace

AppConfigDialog::AppConfigDialog(const QString& bottleName, PackageChecker* checker, QWidget* parent)
    : AbstractDialog(parent),
      m_bottleName(bottleName),
      m_checker(checker),
      m_area(new QScrollArea),
      m_rows(new QVBoxLayout),
      m_appName(makeEdit("package_appname", {}, PackageInfo::MaximumNameLength)),
      m_packageName(makeEdit("package_pkgname", "com.example.lumora", PackageInfo::MaximumFieldLength)),
      m_version(makeEdit("package_pkgversion", "3.9.7lumora9", PackageInfo::MaximumFieldLength)),
      m_category(named(new QComboBox, "package_appcategory")),
      m_description(makeEdit("package_appdescription", tr("WeChat is a chat tool"), 0)),
      m_x86(named(new QCheckBox(tr("x86")), "package_x86_arch")),
      m_arm(named(new QCheckBox(tr("arm")), "package_arm_arch")),
      m_maintainer(named(new MaintainerFields, "package_maintainer")),
      m_nameWarning(named(new Label(Label::Small), "package_name_warning")),
      m_contents(new PackageContentsWidget) {
    setObjectName("package_config_dialog");
    setAccessibleName("package_config_dialog");
    setTitle(tr("Application Deb Package Information"));
    setFixedWidth(DialogWidth);
    m_packageName->lineEdit()->setValidator(
        new QRegularExpressionValidator(PackageInfo::typedPackageName(), this));
    m_version->lineEdit()->setValidator(new QRegularExpressionValidator(PackageInfo::typedVersion(), this));
    for (const QString& word : PackageInfo::categories())
        m_category->addItem(PackageInfo::categoryText(word), word);

    auto* form = new QWidget;
    form->setLayout(m_rows);
    m_rows->setContentsMargins(Tokens::Space24, Tokens::Space8, Tokens::Space24, 0);
    m_rows->setSpacing(Tokens::Space4);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setWidgetResizable(true);
    m_area->setWidget(form);
    m_area->viewport()->setAutoFillBackground(false);
    form->setAutoFillBackground(false);
    bodyLayout()->addWidget(m_area);
    addRow(tr("App Name:"), m_appName);
    addRow(tr("Shortcuts:"), new ShowPackageCheckerWidget(checker),
           tr("Lists the shortcuts contained in the current container and generates shortcuts on the desktop "
              "after installation."));
    addRow(tr("App package name:"), m_packageName,
           tr("Package name rule: official website domain name + author, e.g: com.qq.weixin.lumora"));
    m_nameWarning->setTextRole(Theme::Warning);
    m_nameWarning->setReadingWidth(DialogWidth - 2 * Tokens::Space24);
    m_nameWarning->hide();
    m_rows->addWidget(m_nameWarning);
    addRow(tr("Package version:"), m_version,
           tr("Version number rule: Application version number + author + number, e.g: 3.9.7lumora9"));
    addRow(tr("App Type:"), m_category);
    addRow(tr("App Description:"), m_description);
    addRow(tr("Support Architecture:"), makeArchitectures());
    addRow(tr("Compression:"), new CompressionChoice,
           tr("Debian 11 and older systems cannot install a package that is compressed with zstd."));
    addRow(tr("Maintainer:"), m_maintainer,
           tr("Everybody who has the package can read them. Without both, the package names Cellarix."));
    bodyLayout()->addWidget(m_contents);
    bodyLayout()->addWidget(makeButtons());
    setInfo(PackageInfo());
    fill();
    connect(checker, &PackageChecker::update, this, &AppConfigDialog::fill);
    connect(checker, &PackageChecker::update, this, &AppConfigDialog::fitHeight);
    connect(checker, &PackageChecker::update, this, &AppConfigDialog::listContents);
    connect(this, &AppConfigDialog::dateChange, this, &AppConfigDialog::listContents);
    connect(m_contents->listing(), &PackageListing::changed, this, &AppConfigDialog::onListed);
    connect(m_contents, &PackageContentsWidget::resized, this, &AppConfigDialog::fitHeight);
    m_typing.setSingleShot(true);
    m_typing.setInterval(TypingMs);
    connect(&m_typing, &QTimer::timeout, this, &AppConfigDialog::showTypedErrors);
    for (LineEdit* edit : {m_packageName, m_version, m_maintainer->address()})
        connect(edit, &LineEdit::textEdited, &m_typing, qOverload<>(&QTimer::start));
    connect(m_packageName, &LineEdit::textChanged, this, &AppConfigDialog::warnOfName);
    connect(m_category, qOverload<int>(&QComboBox::activated), this, [this] { m_isCategoryChosen = true; });
}

void AppConfigDialog::openFor(const ProgramRef& program, QWidget* over) {
    auto* checker = new PackageChecker;
    auto* dialog = new AppConfigDialog(program.bottle, checker, over);
    checker->setParent(dialog);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    checker->load(program.bottle);
    dialog->open();
}

LineEdit* AppConfigDialog::makeEdit(const char* name, const QString& sample, int maximumLength) {
    auto* edit = new LineEdit;
    edit->setObjectName(name);
    edit->setAccessibleName(name);
    edit->setPlaceholderText(sample);
    if (maximumLength > 0)
        edit->lineEdit()->setMaxLength(maximumLength);
    connect(edit, &LineEdit::textChanged, this, &AppConfigDialog::dateChange);
    return edit;
}

void AppConfigDialog::addRow(const QString& label, QWidget* field, const QString& rule) {
    auto* text = new Label(label, Label::Strong);
    text->setBuddy(field);
    m_rows->addWidget(text);
    m_rows->addWidget(field);
    if (!rule.isEmpty()) {
        auto* tip = new Label(rule, Label::Small);
        tip->setReadingWidth(DialogWidth - 2 * Tokens::Space24);
        m_rows->addWidget(tip);
    }
    m_rows->addSpacing(Tokens::Space4);
}

QWidget* AppConfigDialog::makeArchitectures() {
    auto* row = named(new QWidget, "package_arches");
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space24);
    for (QCheckBox* box : {m_x86, m_arm}) {
        layout->addWidget(box);
        connect(box, &QCheckBox::clicked, this, &AppConfigDialog::slotsCheckArchsState);
    }
    layout->addStretch();
    return row;
}

QWidget* AppConfigDialog::makeButtons() {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(Tokens::Space24, Tokens::Space12, Tokens::Space24, Tokens::Space24);
    layout->setSpacing(Tokens::Space12);
    auto* cancel = named(new QPushButton(tr("Cancel")), "package_cancelbtn");
    auto* ok = named(new SuggestButton(tr("OK")), "package_okbtn");
    m_ok = ok;
    cancel->setAutoDefault(false);
    ok->setDefault(true);
    layout->addWidget(cancel, 1);
    layout->addWidget(ok, 1);
    connect(cancel, &QPushButton::clicked, this, &AppConfigDialog::onAppConfigCancle);
    connect(ok, &QPushButton::clicked, this, &AppConfigDialog::onAppConfigOK);
    return row;
}

/// Once, as soon as the directory of the bottle is known.
void AppConfigDialog::fill() {
    if (m_isFilled || m_checker->state() != PackageChecker::State::Ready)
        return;
    m_isFilled = true;
    inBackground(
        this,
        [directory = m_checker->bottleDir()] {
            return PackageInfo::fromJson(PackageFiles(directory).read(PackageFiles::InfoName));
        },
        [this](PackageInfo info) {
            if (info.appName.isEmpty() && !m_checker->entries().isEmpty())
                info.appName = m_checker->entries().first().name;
            setInfo(info);
        });
}

/// What the user has typed or chosen stays.
void AppConfigDialog::setInfo(const PackageInfo& info) {
    const std::pair<LineEdit*, QString> texts[] = {
        {m_appName, info.appName.left(PackageInfo::MaximumNameLength)},
        {m_packageName, info.packageName},
        {m_version, info.version},
        {m_description, info.description}};
    for (const auto& text : texts) {
        if (!text.first->lineEdit()->isModified())
            text.first->setText(text.second);
    }
    if (!m_isCategoryChosen)
        m_category->setCurrentIndex(qMax(0, m_category->findData(info.category)));
    if (m_areArchitecturesChosen)
        return;
    m_x86->setChecked(info.architectures.contains(Amd64));
    m_arm->setChecked(info.architectures.contains(Arm64));
}

PackageInfo AppConfigDialog::info() const {
    PackageInfo info;
    info.appName = m_appName->text();
    info.packageName = m_packageName->text();
    info.version = m_version->text();
    info.category = m_category->currentData().toString();
    info.description = m_description->text();
    info.architectures.clear();
    if (m_x86->isChecked())
        info.architectures += Amd64;
    if (m_arm->isChecked())
        info.architectures += Arm64;
    return info;
}

void AppConfigDialog::showEvent(QShowEvent* event) {
    fitHeight();
    m_appName->lineEdit()->setFocus();
    AbstractDialog::showEvent(event);
}

/// The whole form where the screen is high enough; it scrolls otherwise, and the buttons stay.
void AppConfigDialog::fitHeight() {
    const int wanted = m_rows->hasHeightForWidth() ? m_rows->totalHeightForWidth(DialogWidth)
                                                   : m_rows->totalSizeHint().height();
    const int limit = int(screen()->availableSize().height() * ShareOfScreen) - AroundForm -
                      (m_contents->isHidden() ? 0 : m_contents->sizeHint().height());
    m_area->setFixedHeight(qMin(wanted, limit));
    const int before = height();
    adjustSize();
    if (isVisible() && height() != before)  // the user may have moved it
        moveToCenter();
}

void AppConfigDialog::slotsCheckArchsState() {
    auto* clicked = qobject_cast<QCheckBox*>(sender());
    m_areArchitecturesChosen = true;
    if (clicked && !m_x86->isChecked() && !m_arm->isChecked())
        clicked->setChecked(true);
    Q_EMIT dateChange();
}

bool AppConfigDialog::isNameTaken() const {
    const PackageListing* listing = m_contents->listing();
    return listing->hasSummary() && listing->packageName() == m_packageName->text() &&
           listing->summary().nameCause == QLatin1String("foreign-name");
}

QString AppConfigDialog::errorOf(const LineEdit* edit) const {
    if (edit == m_maintainer->address())
        return m_maintainer->addressError();
    const bool isVersion = edit == m_version;
    const QString error =
        isVersion ? PackageInfo::versionError(edit->text()) : PackageInfo::packageNameError(edit->text());
    if (!error.isEmpty())
        return error;
    if (isVersion)
        return info().fileNameError();
    return isNameTaken() ? tr("Another program's package has this name") : QString();
}

void AppConfigDialog::warnOfName() {
    const QString warning = PackageInfo::packageNameWarning(m_packageName->text());
    if (warning == m_nameWarning->text())
        return;
    m_nameWarning->setText(warning);
    m_nameWarning->setVisible(!warning.isEmpty());
    fitHeight();
}

/// A field that is still empty is not wrong yet.
void AppConfigDialog::showTypedErrors() {
    for (LineEdit* edit : {m_packageName, m_version, m_maintainer->address()}) {
        const QString error = edit->text().isEmpty() ? QString() : errorOf(edit);
        if (!error.isEmpty())
            edit->showAlertMessage(error);
        else if (edit->isAlert())
            edit->hideAlertMessage();
    }
    fitHeight();
}

bool AppConfigDialog::slotsValidateWidgets() {
    for (LineEdit* edit : {m_packageName, m_version, m_maintainer->address()}) {
        const QString error = errorOf(edit);
        if (error.isEmpty())
            continue;
        edit->showAlertMessage(error);
        edit->lineEdit()->setFocus();
        fitHeight();
        m_area->ensureWidgetVisible(edit);
        return false;
    }
    return true;
}

void AppConfigDialog::listContents() {
    if (m_checker->state() == PackageChecker::State::Loading)
        return;
    // A name that is refused anyway needs no look at the packages of the machine.
    const QString name = m_packageName->text();
    m_contents->listing()->want(m_bottleName,
                                PackageInfo::packageNameError(name).isEmpty() ? name : QString(),
                                PackageChecker::toJson(m_checker->entries()));
}

void AppConfigDialog::onListed() {
    const PackageListing* listing = m_contents->listing();
    if (listing->state() != PackageListing::State::Listed)
        return;
    if (!isNameTaken() || m_packageName->isAlert())
        return;
    m_packageName->showAlertMessage(errorOf(m_packageName));
    fitHeight();
}

void AppConfigDialog::onAppConfigCancle() {
    reject();
}

void AppConfigDialog::onAppConfigOK() {
    if (!slotsValidateWidgets())
        return;
    if (m_checker->selectedCount() == 0) {
        // The texts are the product's in every language.
        auto* warning = new Dialog("缺少应用配置", {}, this);
        warning->setAttribute(Qt::WA_DeleteOnClose);
        warning->setIcon(Theme::icon("dialog-warning"));
        warning->addButton("确定", true, Dialog::ButtonRecommend);
        warning->open();
        return;
    }
    m_ok->setEnabled(false);
    m_maintainer->remember();
    m_checker->save(this, [this](bool isSaved) {
        if (!isSaved) {
            onSaveFailed();
            return;
        }
        inBackground(
            this,
            [directory = m_checker->bottleDir(), object = info().toJson()] {
                return PackageFiles(directory).write(PackageFiles::InfoName, object);
            },
            [this](bool isWritten) { isWritten ? startPackaging() : onSaveFailed(); });
    });
}

void AppConfigDialog::onSaveFailed() {
    m_ok->setEnabled(true);
    FloatingMessage::show(this, Theme::icon("dialog-warning"),
                          tr("The package settings cannot be saved in %1. Nothing was packed.")
                              .arg(m_checker->bottleDir() + "/pkgcfg"));
}

void AppConfigDialog::startPackaging() {
    if (isHidden())  // cancelled meanwhile
        return;
    auto* packaging = new DoPackageDialog(parentWidget());
    packaging->setAttribute(Qt::WA_DeleteOnClose);
    packaging->start(m_bottleName, m_packageName->text(), m_version->text(),
                     QDir::homePath() + "/.cache/cellarix/pkglogs/");
    accept();
    packaging->open();
}
