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

/// What is to be printed where help or version is asked for, otherwise empty. Needs no application object in
/// working order.
QString answer(const QStringList& arguments);

}  // namespace CommandLineOptions
