#pragma once

#include <QJsonObject>
#include <QString>

/// All that is known of an executable, for records of launches: {"peinfo": what ExeFileChecker tells,
/// "verinfo": the version block}. Empty, with a warning, for what is no regular file. Runs the tools and
/// waits for them.
QJsonObject exeFileInfo(const QString& path);

/// The version block alone, by name; empty when the file has none. Runs one tool for at most 30 s; the flag
/// says whether it has given an answer.
QJsonObject peVersionInfo(const QString& path, bool* readable = nullptr);
