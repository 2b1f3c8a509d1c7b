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

#include "backend/ProgramRef.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/controls/SuggestButton.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/Dialog.h"
#include "packaging/config/PackageChecker.h"
#include "packaging/config/PackageFiles.h"
#include "packaging/config/ShowPackageCheckerWidget.h"
#include "packaging/driver/DoPackageDialog.h"

using namespace Fenk;

namespace {

constexpr int DialogWidth = 500;
constexpr double ShareOfScreen = 0.9;
constexpr int AroundForm = 128;  ///< title and buttons
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
      m_arm(named(new QCheckBox(tr("arm")), "package_arm_arch")) {
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
    addRow(tr("Package version:"), m_version,
           tr("Version number rule: Application version number + author + number, e.g: 3.9.7lumora9"));
    addRow(tr("App Type:"), m_category);
    addRow(tr("App Description:"), m_description);
    addRow(tr("Support Architecture:"), makeArchitectures());
    bodyLayout()->addWidget(makeButtons());
    fill();
    connect(checker, &PackageChecker::update, this, &AppConfigDialog::fill);
    connect(checker, &PackageChecker::update, this, &AppConfigDialog::fitHeight);
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
    if (m_isFilled)
        return;
    PackageInfo info;
    if (!m_checker->bottleDir().isEmpty()) {
        m_isFilled = true;
        info = PackageInfo::fromJson(PackageFiles(m_checker->bottleDir()).read(PackageFiles::InfoName));
        if (info.appName.isEmpty() && !m_checker->entries().isEmpty())
            info.appName = m_checker->entries().first().name;
    }
    m_appName->setText(info.appName.left(PackageInfo::MaximumNameLength));
    m_packageName->setText(info.packageName);
    m_version->setText(info.version);
    m_category->setCurrentIndex(qMax(0, m_category->findData(info.category)));
    m_description->setText(info.description);
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
    const int limit = int(screen()->availableSize().height() * ShareOfScreen) - AroundForm;
    m_area->setFixedHeight(qMin(wanted, limit));
    adjustSize();
    if (isVisible())
        moveToCenter();
}

void AppConfigDialog::slotsCheckArchsState() {
    auto* clicked = qobject_cast<QCheckBox*>(sender());
    if (clicked && !m_x86->isChecked() && !m_arm->isChecked())
        clicked->setChecked(true);
    Q_EMIT dateChange();
}

bool AppConfigDialog::slotsValidateWidgets() {
    const std::pair<LineEdit*, QString> checks[] = {
        {m_packageName, PackageInfo::packageNameError(m_packageName->text())},
        {m_version, PackageInfo::versionError(m_version->text())}};
    for (const auto& check : checks) {
        if (check.second.isEmpty())
            continue;
        check.first->showAlertMessage(check.second);
        check.first->lineEdit()->setFocus();
        fitHeight();
        m_area->ensureWidgetVisible(check.first);
        return false;
    }
    return true;
}

void AppConfigDialog::onAppConfigCancle() {
    reject();
}

void AppConfigDialog::onAppConfigOK() {
    if (!slotsValidateWidgets())
        return;
    if (m_checker->selectedCount() == 0) {
        // The texts are the product's in every language.
        Dialog warning("缺少应用配置", {}, this);
        warning.setIcon(Theme::icon("dialog-warning"));
        warning.addButton("确定", true, Dialog::ButtonRecommend);
        warning.exec();
        return;
    }
    m_checker->save();
    PackageFiles(m_checker->bottleDir()).write(PackageFiles::InfoName, info().toJson());
    auto* packaging = new DoPackageDialog(parentWidget());
    packaging->setAttribute(Qt::WA_DeleteOnClose);
    packaging->start(m_bottleName, m_packageName->text(), m_version->text(),
                     QDir::homePath() + "/.cache/cellarix/pkglogs/");
    accept();
    packaging->open();
}
