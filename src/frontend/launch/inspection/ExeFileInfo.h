#pragma once

#include <QJsonObject>
#include <QString>

/// Everything known about an executable, for event records: {"peinfo": ExeFileChecker::info(), "verinfo": the
/// version block}. Empty, with a warning, for anything but a regular file. Runs the tools and waits for them.
QJsonObject exeFileInfo(const QString& path);

/// The version block only, by key; empty if the file has none. Runs one tool for at most 30 s; `readable` is
/// false if it failed.
QJsonObject peVersionInfo(const QString& path, bool* readable = nullptr);

/// The product's version in a version block, or else the file's, as reports tell it: with points between the
/// numbers and without blanks.
QString readableVersion(const QJsonObject& versionBlock);
/// The same of a program's file; empty where it is not found. Waits as peVersionInfo() does.
QString programVersion(const QJsonObject& bottleRecord, const QString& programId);
