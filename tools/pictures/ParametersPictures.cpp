// Pictures of a bottle's parameters with sample data: parameters-pictures STATE [--theme light|dark]
// --screenshot FILE LANG chooses English or Chinese. Needs a session bus on which the name of the bottle
// service is free.
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QFileDialog>
#include <QJsonObject>
#include <QLineEdit>
#include <QVBoxLayout>

#include "Pictures.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/parameters/EmulatorComboBox.h"
#include "shell/configuration/parameters/LogFileEdit.h"
#include "shell/configuration/parameters/WineChannerCombobox.h"
#include "shell/configuration/parameters/WineParamsCfgWidget.h"
#include "support/FakeBottleService.h"

using namespace Fenk;
using namespace TestSupport;

namespace {

constexpr QSize PageSize(640, 480);

struct Scene {
    FakeBottleService* service;
    QWidget* window;
    WineParamsCfgWidget* page;

    template <class Control>
    Control* part(const char* name) const {
        return page->findChild<Control*>(name);
    }
};

std::shared_ptr<EntryParameters> sample(const QString& environment) {
    auto entry =
        std::make_shared<EntryParameters>(QJsonObject{{"id", "a"}, {"arguments", "--windowed -lang zh"}});
    entry->environment = environment;
    entry->channels = "+event,+win,+x11drv";
    return entry;
}

QList<QWidget*> empty(const Scene& scene) {
    scene.page->setEntry(std::make_shared<EntryParameters>());
    return {scene.window};
}

QList<QWidget*> filled(const Scene& scene) {
    scene.page->setEntry(sample("DXVK_HUD=fps TITLE='Harbour Office'"));
    return {scene.window};
}

QList<QWidget*> channels(const Scene& scene) {
    filled(scene);
    auto* combo = scene.part<WineChannerCombobox>("params_channels");
    combo->showPopup();
    settle(400);
    return {scene.window, combo->view()->window()};
}

QList<QWidget*> faults(const Scene& scene) {
    scene.page->setEntry(sample("DXVK_HUD=fps 2ND=x"));
    auto* file = scene.part<LogFileEdit>("params_log_file")->findChild<LineEdit*>();
    file->setText("/nowhere/office.log");
    Q_EMIT file->lineEdit()->editingFinished();
    settle(200);
    return {scene.window};
}

QList<QWidget*> save(const Scene& scene) {
    filled(scene);
    scene.page->onSetLogSaveDir();
    settle(400);
    return {scene.window, scene.page->findChild<QFileDialog*>()};
}

QList<QWidget*> focus(const Scene& scene) {
    filled(scene);
    scene.part<QAbstractButton>("params_log_file_button")->setFocus(Qt::TabFocusReason);
    settle(100);
    return {scene.window};
}

QImage paint(bool translators, const std::function<QList<QWidget*>(const Scene&)>& windows) {
    FakeBottleService service;
    if (!service.start())
        return {};
    if (translators)
        service.setJson(
            "Bottles.getEmulators",
            QJsonObject{{"installed", QJsonObject{{"box64", "x"}, {"hangover", "y"}}}, {"using", "box64"}});
    QWidget window;
    auto* page = new WineParamsCfgWidget;
    auto* layout = new QVBoxLayout(&window);
    layout->setContentsMargins(Tokens::Space24, Tokens::Space24, Tokens::Space24, Tokens::Space24);
    layout->addWidget(page);
    window.setFixedSize(PageSize);
    page->setBottle("office", "/tmp");
    window.show();
    window.activateWindow();
    settle(600);
    return picture(windows({&service, &window, page}));
}

}  // namespace

int main(int argc, char** argv) {
    return takePicture(argc, argv,
                       {{"empty", [] { return paint(false, empty); }},
                        {"filled", [] { return paint(true, filled); }},
                        {"channels", [] { return paint(true, channels); }},
                        {"faults", [] { return paint(true, faults); }},
                        {"save", [] { return paint(true, save); }},
                        {"focus", [] { return paint(true, focus); }}});
}
