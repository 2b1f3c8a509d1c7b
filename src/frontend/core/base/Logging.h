#pragma once

#include <QString>

/// Sends Qt's messages to the console and to the program's log file: info and above on the default category,
/// debug too in a development build. Called once by main, after the application's name is set; later calls do
/// nothing.
void initLogging();

/// The text with "/home/<name>", and its forms with backslashes as Wine prints them, replaced by
/// "@home_dir@". What counts as a name are letters, digits and underscores.
QString cleanHomePaths(QString text);
