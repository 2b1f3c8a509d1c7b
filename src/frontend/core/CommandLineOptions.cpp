#include "core/CommandLineOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include "core/base/BuildInfo.h"

const char CommandLineOptions::Debug[] = "debug";
const char CommandLineOptions::Fixup[] = "fixup";
const char CommandLineOptions::Open[] = "open";
const char CommandLineOptions::Update[] = "update";
const char CommandLineOptions::Service[] = "service";

namespace {

struct Option {
    const char* name;
    const char* description;
};

const Option Options[] = {
    {CommandLineOptions::Debug,
     QT_TRANSLATE_NOOP("Main", "Open url with bottles configure dialog for debugging")},
    {CommandLineOptions::Fixup, QT_TRANSLATE_NOOP("Main", "Fix program by installing components")},
    {CommandLineOptions::Open, QT_TRANSLATE_NOOP("Main", "Open file with specified bottles and extension")},
    {CommandLineOptions::Update, QT_TRANSLATE_NOOP("Main", "Update the base envrionment for all apps")},
    {CommandLineOptions::Service, QT_TRANSLATE_NOOP("Main", "Run as DBus service without UI")},
};

}  // namespace

void CommandLineOptions::fill(QCommandLineParser& parser) {
    parser.setApplicationDescription("Windows Software launcher via lumora-wine");
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument("url", "url of exe files to open");
    for (const Option& option : Options)
        parser.addOption(
            QCommandLineOption(option.name, QCoreApplication::translate("Main", option.description)));
}

QString CommandLineOptions::answer(const QStringList& arguments) {
    QCommandLineParser parser;
    fill(parser);
    if (!parser.parse(arguments))
        return {};
    if (parser.isSet("version"))
        return QCoreApplication::applicationName() + ' ' + BuildInfo::version() + '\n';
    return parser.isSet("help") ? parser.helpText() : QString();
}
