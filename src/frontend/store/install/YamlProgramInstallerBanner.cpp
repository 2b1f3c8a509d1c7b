#include "store/install/YamlProgramInstallerBanner.h"

#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "launch/banner/BannerCustomButton.h"

using namespace Fenk;

namespace {
constexpr int BarWidth = 320;
}

YamlProgramInstallerBanner::YamlProgramInstallerBanner(QWidget* parent)
    : WineExeLaunchBanner(parent), m_setupPart(new QWidget), m_bar(new QProgressBar) {
    setObjectName("yaml_installer_banner");
    m_bar->setObjectName("setup_bar");
    m_bar->setAccessibleName("setup_bar");
    m_bar->setTextVisible(false);
    m_bar->setFixedWidth(BarWidth);
    auto* logs = new BannerCustomButton(Theme::icon("cxb_showlog"), tr("View Logs"));
    logs->setAccessibleName("setup_logs_btn");
    connect(logs, &BannerCustomButton::clicked, this, &WineExeLaunchBanner::showLogsButtonClicked);
    auto* cancel = new QPushButton(tr("Cancel"));
    cancel->setAccessibleName("cancel_setup_btn");
    cancel->setAccessibleDescription(cancel->text());
    cancel->setMinimumWidth(Tokens::ButtonMinWidth);
    connect(cancel, &QPushButton::clicked, this, &QWidget::close);
    auto* layout = new QVBoxLayout(m_setupPart);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space16);
    layout->addWidget(m_bar, 0, Qt::AlignHCenter);
    auto* row = new QHBoxLayout;
    row->setSpacing(Tokens::Space16);
    row->addStretch();
    row->addWidget(logs);
    row->addWidget(cancel);
    row->addStretch();
    layout->addLayout(row);
    addRunningPart(m_setupPart);
    showSetupStage();
}

void YamlProgramInstallerBanner::showSetupStage() {
    m_isSetup = true;
    setCanRepair(false);
    m_setupPart->show();
    fitRunningPart();
}

void YamlProgramInstallerBanner::showRunStage() {
    m_isSetup = false;
    setCanRepair(true);
    m_setupPart->hide();
    fitRunningPart();
}

void YamlProgramInstallerBanner::setProgress(int percent) {
    m_bar->setValue(qMax(m_bar->value(), percent));
}

BannerCloseConfirmDialog::Form YamlProgramInstallerBanner::questionForm() const {
    return m_isSetup ? BannerCloseConfirmDialog::InstallingComponents : BannerCloseConfirmDialog::Starting;
}
