#pragma once

#include <QString>
#include <atomic>

/// Whether a folder or a zip archive may be a portable program, before the background service copies it and
/// judges all of it: whether there is a program in it. The result is the reason against it, for the user;
/// empty if there is none, or after a cancel. Reads only names, of as many entries as the service takes; for
/// worker threads.
namespace PortableCheck {

QString folder(const QString& path, const std::atomic_bool& isCancelled);
QString archive(const QString& path, const std::atomic_bool& isCancelled);

}  // namespace PortableCheck
