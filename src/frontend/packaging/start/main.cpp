// cellarix-bottle-progress PROGRAM make|update: the window of packaged_program.py, which starts it when its
// work takes long, writes the progress to its standard input and ends it by closing that. Exits with 3 when
// the user cancels.
#include <unistd.h>

#include "core/base/Paths.h"
#include "fenk/log/StandardError.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "packaging/start/BottleProgress.h"
#include "packaging/start/BottleProgressDialog.h"

namespace {

constexpr int NoDisplay = 1;
constexpr int Usage = 64;
constexpr int Cancelled = 3;

/// Qt aborts without a display, which would leave a core file. The script goes on without a window.
void onMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
    if (type != QtFatalMsg)
        return;
    Fenk::writeToStandardError(message.toLocal8Bit() + '\n');
    ::_exit(NoDisplay);
}

}  // namespace

int main(int argc, char* argv[]) {
    qInstallMessageHandler(onMessage);
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QCoreApplication::setOrganizationName("lumora");
    QCoreApplication::setApplicationName("cellarix");
    Fenk::Application application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() != 3)
        return Usage;
    Fenk::Theme::addIconSearchPath(Paths::iconsDir());
    application.setTranslationsDir(Paths::translationsDir());
    application.loadTranslator();
    const auto work =
        words.at(2) == "update" ? BottleProgressDialog::Work::Update : BottleProgressDialog::Work::Make;
    BottleProgressDialog dialog(words.at(1), work);
    const BottleProgress script(STDIN_FILENO);
    QObject::connect(&script, &BottleProgress::progress, &dialog, &BottleProgressDialog::setProgress);
    QObject::connect(&script, &BottleProgress::ended, &application, &QCoreApplication::quit);
    QObject::connect(&dialog, &QDialog::finished, &application, [] { QCoreApplication::exit(Cancelled); });
    dialog.show();
    dialog.moveToCenter();
    return QApplication::exec();
}
