#pragma once

#include <QStringList>

class QCommandLineParser;

/// The switches of the command line, with their names and descriptions.
namespace CommandLineOptions {

extern const char Debug[];
extern const char Fixup[];
extern const char Open[];
extern const char Update[];
extern const char Service[];

void fill(QCommandLineParser& parser);

/// The text to print when the arguments ask for help or version, otherwise empty. Works without a complete
/// application object.
QString answer(const QStringList& arguments);

}  // namespace CommandLineOptions
