#include <QComboBox>
#include <QVBoxLayout>

#include "Pages.h"
#include "fenk/controls/Card.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/SettingRow.h"
#include "fenk/controls/SwitchButton.h"
#include "fenk/controls/WarningButton.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

namespace Gallery {

namespace {

SwitchButton* makeSwitch(bool on) {
    auto* button = new SwitchButton;
    button->setChecked(on);
    return button;
}

QComboBox* makeCombo(const QStringList& texts) {
    auto* combo = new QComboBox;
    combo->addItems(texts);
    return combo;
}

}  // namespace

QWidget* makeSettingsPage() {
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space8);

    layout->addWidget(new Label("Running", Label::Heading));
    auto* running = new Card;
    running->addRow(new SettingRow("Windows version", "What programs are told they run on",
                                   makeCombo({"Windows 10", "Windows 7", "Windows XP"})));
    running->addRow(new SettingRow("Direct3D through Vulkan",
                                   "Faster in games; needs a graphics driver with Vulkan", makeSwitch(true)));
    running->addRow(new SettingRow("Save memory", "Programs start more slowly", makeSwitch(false)));
    layout->addWidget(running);
    layout->addSpacing(Tokens::Space16);

    layout->addWidget(new Label("Display", Label::Heading));
    auto* display = new Card;
    display->addRow(new SettingRow("Scaling", QString(), makeCombo({"100 %", "125 %", "150 %", "200 %"})));
    display->addRow(
        new SettingRow("Smooth fonts", "Follows the desktop unless it is turned off here", makeSwitch(true)));
    layout->addWidget(display);
    layout->addSpacing(Tokens::Space16);

    layout->addWidget(new Label("Danger", Label::Heading));
    auto* danger = new Card;
    danger->addRow(new SettingRow("Delete this bottle", "Its programs and their files are lost",
                                  new WarningButton("Delete")));
    layout->addWidget(danger);
    layout->addStretch();
    return page;
}

}  // namespace Gallery
