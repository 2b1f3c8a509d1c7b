#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QPushButton>
#include <QTranslator>

#include "fenk/Application.h"
#include "fenk/Theme.h"
#include "fenk/Tokens.h"
#include "fenk/WindowPlatform.h"
#include "launch/environment/BottleEnvScript.h"
#include "launch/environment/EnvInitBanner.h"

namespace {

const QStringList SampleLines = {"Making the template of lumora-wine10-stable.", "Made it in 12 s.",
                                 "Making the template of ge-proton10.", "Made it in 19 s.",
                                 "Bringing the bottle \"Office\" up to date."};

void show(EnvInitBanner& banner, const QString& state) {
    const BottleEnvScript& script = envInitScript();
    banner.showRunning(script.title);
    banner.appendLines(SampleLines);
    if (state == "env-logs")
        banner.findChild<QPushButton*>("expand_logsbtn")->click();
    if (state == "env-done")
        banner.showCompleted(script.completedTitle, script.completedMessage);
    if (state == "env-failed")
        banner.showNotStarted(EnvInitBanner::tr("The setup did not start"),
                              EnvInitBanner::tr("%1 cannot be run. Please install Cellarix again.")
                                  .arg("init-bottle-in-client.sh"));
}

}  // namespace

/// Takes a picture of the environment's banner in one of its states: env-running, env-logs, env-done or
/// env-failed.
int main(int argc, char** argv) {
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    Fenk::Application app(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"theme", "light or dark.", "theme"}, {"screenshot", "Where to write it.", "file"}});
    parser.addPositionalArgument("state", "What to show.");
    parser.process(app);
    Fenk::Theme::addIconSearchPath(TEST_SOURCE_DIR "/src/platform/data/icons");
    Fenk::WindowPlatform::assumeCompositing(true);
    Fenk::Theme::instance()->setAnimationsEnabled(false);
    Fenk::Theme::instance()->setColorType(parser.value("theme") == "dark" ? Fenk::Theme::Dark
                                                                          : Fenk::Theme::Light);
    QTranslator translator;
    if (translator.load(QLocale(), "cellarix", "_", TEST_TRANSLATIONS_DIR))
        QCoreApplication::installTranslator(&translator);
    EnvInitBanner banner;
    show(banner, parser.positionalArguments().value(0));
    banner.show();
    QElapsedTimer settled;
    settled.start();
    while (settled.elapsed() < Fenk::Tokens::FadeMs)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return banner.grab().save(parser.value("screenshot")) ? 0 : 1;
}
