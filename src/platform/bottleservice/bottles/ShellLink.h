#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

/// What a Windows shortcut (.lnk, the Shell Link binary format) starts. Paths are Windows paths as the file
/// has them and not to be trusted.
struct ShellLink {
    static constexpr int MaximumBytes = 1024 * 1024;

    QString target;
    QString arguments;
    QString workingDirectory;
    QString iconPath;
    QString description;

    /// Nothing for what is no shortcut, or one that names no file: a web address, a control panel item, a
    /// program that Windows Installer would fetch first.
    static std::optional<ShellLink> parse(const QByteArray& file);
};
