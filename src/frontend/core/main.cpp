#include <unistd.h>

#include <QDebug>
#include <QFontDatabase>
#include <QLoggingCategory>
#include <QtConcurrentRun>
#include <csignal>
#include <cstdio>
#include <optional>

#include "backend/ServiceThreads.h"
#include "core/CellarixApplication.h"
#include "core/CellarixService.h"
#include "core/DisplayCheck.h"
#include "core/ProductFacts.h"
#include "core/ServiceAgreement.h"
#include "core/base/Logging.h"
#include "fenk/system/UnixSignals.h"
#include "probes/GraphicsSupport.h"

namespace {

void setHighDpi() {
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
}

void nameApplication(CellarixApplication& application) {
    QCoreApplication::setOrganizationName("lumora");
    QCoreApplication::setApplicationName("cellarix");
    nameProduct(application);
}

int run(CellarixApplication& application) {
    nameApplication(application);
    initLogging();
    qInfo() << "cellarix start";
    QtConcurrent::run(&application, &CellarixApplication::checkBackendVersion);
    qDebug() << "load icon font";
    QFontDatabase::addApplicationFont(":/fonts/icon.ttf");
    const Fenk::UnixSignals signalHandlers({SIGQUIT, SIGINT, SIGTERM, SIGHUP},
                                           Fenk::UnixSignals::Repeated::Fatal);
    QObject::connect(&signalHandlers, &Fenk::UnixSignals::received, [&signalHandlers] {
        qInfo() << "ending on signal" << signalHandlers.lastReceived();
        QCoreApplication::quit();
    });
    const CellarixService service(&application);
    // Starts that other processes have handed over meanwhile go on.
    const int handled = application.handleCommandLine({});
    // A signal that came while a dialog ran before the event loop has ended the dialog only.
    const bool isEndRequested = signalHandlers.lastReceived() != 0;
    if (handled != 0 && (isEndRequested || application.canQuit()))
        return 1;
    if (isEndRequested)
        return application.hasOnlyRefused() ? 1 : 0;
    if (!application.isNeeded()) {
        if (application.isUpdate())
            return 0;
        qWarning() << "nothing was started, leaving";
        return 1;
    }
    const int exitCode = QApplication::exec();
    return exitCode == 0 && application.hasOnlyRefused() ? 1 : exitCode;
}

}  // namespace

int main(int argc, char* argv[]) {
    QLoggingCategory::setFilterRules("common.veskhttp.debug=false");
    // Nothing draws with OpenGL; loading its libraries would delay the first window by 0.1 s.
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    setHighDpi();
    int exitCode = 1;
    {
        std::optional<DisplayCheck> displayCheck(std::in_place);
        CellarixApplication application(argc, argv);
        displayCheck.reset();
        // The misspelt key of the first release: another would let an old and a new version run side by side.
        if (!application.setSingleInstance("cellarrix")) {
            qWarning() << "another instance is running";
            return 1;
        }
        exitCode = run(application);
    }
    if (!ServiceThreads::isIdle() || !GraphicsSupport::isIdle()) {
        std::fflush(nullptr);
        ::_exit(exitCode);
    }
    return exitCode;
}
