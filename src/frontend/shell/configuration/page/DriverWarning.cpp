#include "shell/configuration/page/DriverWarning.h"

#include <QDesktopServices>
#include <QLocale>
#include <QUrl>
#include <QVBoxLayout>

#include "backend/InBackground.h"
#include "backend/TextUtils.h"
#include "backend/WindowsPath.h"
#include "core/base/BuildInfo.h"
#include "core/base/ToolProcess.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "probes/GraphicsSupport.h"
#include "probes/MachineUtils.h"
#include "shell/configuration/rules/DriverRule.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;

namespace {

constexpr QSize ChineseSize(344, 380);
constexpr QSize OtherSize(514, 550);

bool isChinese() {
    return QLocale().name().startsWith(QLatin1String("zh"));
}

}  // namespace

DriverWarning::DriverWarning(QWidget* parent) : Dialog(parent) {
    setObjectName("driver_warning");
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowIcon(warningIcon());
    setTitle(
        tr("Currently you are running a program that requires a 32-bit graphics card driver, please confirm "
           "the model and type of your current device's graphics cardand install the corresponding driver."));
    auto* help = new Label(Label::Body);
    help->setTextFormat(Qt::RichText);
    help->setText(
        tr("Please refer to ").toHtmlEscaped() +
        TextUtils::linkHtml(BuildInfo::driverHelpUrl(), tr("\"Installing drivers of graphics cards\"")));
    help->setWordWrap(true);
    help->setAlignment(Qt::AlignCenter);
    help->setTextInteractionFlags(Qt::TextBrowserInteraction);
    connect(help, &QLabel::linkActivated, help,
            [](const QString& link) { QDesktopServices::openUrl(QUrl(link)); });
    auto* picture = new QLabel;
    picture->setPixmap(warningIcon().pixmap(Tokens::IconTile, Tokens::IconTile));
    picture->setAlignment(Qt::AlignCenter);
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setSpacing(Tokens::Space16);
    layout->addStretch();
    layout->addWidget(picture);
    layout->addWidget(help);
    layout->addStretch();
    addContent(content);
    addButton(tr("Close"), true);
    setFixedSize(isChinese() ? ChineseSize : OtherSize);
}

DriverCheck::DriverCheck(QWidget* window) : QObject(window), m_window(window) {}

void DriverCheck::check(const QString& bottlePath, const QString& programPath, const QString& runner) {
    const int number = ++m_checks;
    if (programPath.isEmpty() || !DriverRule::isConcerned(MachineUtils::cpuArchitecture(), runner))
        return;
    const auto describe = [bottlePath, programPath] {
        const QString path = WindowsPath::isWindowsPath(programPath)
                                 ? WindowsPath::toUnix(bottlePath, programPath)
                                 : programPath;
        return QString::fromUtf8(ToolProcess::run("file", {"--brief", "--", path}).standardOutput);
    };
    inBackground(this, describe, [this, number](const QString& description) {
        if (number == m_checks)
            onDescribed(description);
    });
}

void DriverCheck::onDescribed(const QString& fileDescription) {
    if (!DriverRule::isFor32Bit(fileDescription))
        return;
    whenDone(this, GraphicsSupport::driverComplete(), [this, number = m_checks](bool isComplete) {
        if (number == m_checks && !isComplete)
            warn();
    });
}

void DriverCheck::warn() {
    if (!m_window->findChild<DriverWarning*>())
        (new DriverWarning(m_window))->open();
}
