#include "packaging/driver/PackagePages.h"

#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/controls/SuggestButton.h"
#include "fenk/style/Tokens.h"
#include "widgets/LogView.h"

using namespace Fenk;

namespace {

constexpr int LogHeight = 200;
constexpr int OrdinaryLevel = 3;
constexpr int ErrorLevel = 0;
constexpr int ReadingWidth = 400;

QVBoxLayout* column(QWidget* page) {
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(Tokens::Space24, Tokens::Space8, Tokens::Space24, Tokens::Space24);
    layout->setSpacing(Tokens::Space12);
    return layout;
}

Label* centred(const QString& text, Label::Kind kind) {
    auto* label = new Label(text, kind);
    label->setAlignment(Qt::AlignCenter);
    label->setReadingWidth(ReadingWidth);
    return label;
}

QPushButton* button(QPushButton* button, const char* name) {
    button->setObjectName(name);
    button->setAccessibleName(name);
    return button;
}

}  // namespace

ShowPackagingProgressWidget::ShowPackagingProgressWidget(QWidget* parent)
    : QWidget(parent),
      m_percent(centred({}, Label::Secondary)),
      m_bar(new QProgressBar),
      m_details(button(new QPushButton, "package_details_btn")) {
    m_bar->setObjectName("package_progressbar");
    m_bar->setAccessibleName("package_progressbar");
    m_bar->setRange(0, 100);
    m_bar->setTextVisible(false);
    auto* layout = column(this);
    layout->addWidget(centred(tr("Packaging, please wait..."), Label::Strong));
    layout->addWidget(m_bar);
    layout->addWidget(m_percent);
    layout->addWidget(m_details, 0, Qt::AlignCenter);
    connect(m_details, &QPushButton::clicked, this, [this] { Q_EMIT detailsToggled(!m_isShown); });
    setDetailsShown(false);
    reset();
}

void ShowPackagingProgressWidget::reset() {
    m_bar->setValue(0);
    m_percent->setText(tr("Packaging app in progress ...%1%").arg(0));
}

void ShowPackagingProgressWidget::setProgress(double percent) {
    const int whole = qMax(m_bar->value(), int(percent));
    m_bar->setValue(whole);
    m_percent->setText(tr("Packaging app in progress ...%1%").arg(whole));
}

void ShowPackagingProgressWidget::setDetailsShown(bool shown) {
    m_isShown = shown;
    m_details->setText(shown ? tr("Put away details") : tr("Show details"));
}

ShowPackagingLogWidget::ShowPackagingLogWidget(QWidget* parent) : QWidget(parent), m_view(new LogView) {
    m_view->setAccessibleName("package_log");
    m_view->setFixedHeight(LogHeight);
    column(this)->addWidget(m_view);
}

void ShowPackagingLogWidget::append(const QString& line, bool isError) {
    m_view->appendLine(line, isError ? ErrorLevel : OrdinaryLevel);
}

AppPkgInfoWidget::AppPkgInfoWidget(QWidget* parent)
    : QWidget(parent),
      m_name(centred({}, Label::Strong)),
      m_version(centred({}, Label::Secondary)),
      m_directory(button(new QPushButton, "package_dir_btn")) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addWidget(m_name);
    layout->addWidget(m_version);
    layout->addWidget(m_directory, 0, Qt::AlignCenter);
    m_directory->setFlat(true);
    connect(m_directory, &QPushButton::clicked, this, &AppPkgInfoWidget::pkgDirClicked);
}

void AppPkgInfoWidget::setPackage(const QString& name, const QString& version, const QString& directory) {
    m_name->setText(name);
    m_version->setText(version);
    const QString text = tr("Saved path: ") + directory;
    m_directory->setText(fontMetrics().elidedText(text, Qt::ElideMiddle, ReadingWidth).replace('&', "&&"));
    m_directory->setToolTip(plainToolTip(directory));
}

ShowPackageDoneWidget::ShowPackageDoneWidget(QWidget* parent)
    : QWidget(parent), m_info(new AppPkgInfoWidget) {
    auto* change = button(new QPushButton(tr("Change saved path")), "package_change_path_btn");
    auto* view = button(new SuggestButton(tr("View App")), "package_view_btn");
    auto* layout = column(this);
    layout->addWidget(centred(tr("Packaging is complete"), Label::Heading));
    layout->addWidget(m_info);
    auto* row = new QHBoxLayout;
    row->setSpacing(Tokens::Space12);
    row->addWidget(change, 1);
    row->addWidget(view, 1);
    layout->addLayout(row);
    connect(change, &QPushButton::clicked, this, &ShowPackageDoneWidget::changePathClicked);
    connect(view, &QPushButton::clicked, this, &ShowPackageDoneWidget::viewClicked);
}

ShowPackageFailedWidget::ShowPackageFailedWidget(QWidget* parent)
    : QWidget(parent), m_reason(centred({}, Label::Body)) {
    auto* log = button(new QPushButton(tr("View Logs")), "package_view_log_btn");
    auto* layout = column(this);
    layout->addWidget(centred(tr("Application Packaging Failed"), Label::Heading));
    layout->addWidget(m_reason);
    layout->addWidget(
        centred(tr("You can try using the advanced debugging tools to improve the success rate of the run"),
                Label::Secondary));
    layout->addWidget(log, 0, Qt::AlignCenter);
    m_reason->hide();
    connect(log, &QPushButton::clicked, this, &ShowPackageFailedWidget::logClicked);
}

void ShowPackageFailedWidget::setReason(const QString& reason) {
    m_reason->setText(reason);
    m_reason->setVisible(!reason.isEmpty());
}
