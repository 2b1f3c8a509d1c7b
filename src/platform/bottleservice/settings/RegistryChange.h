#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include "manifest/Manifest.h"

/// A change of a bottle's registry that can be stored in bottle.yml until it is done, and can be repeated.
/// Texts must have passed SettingRules.
class RegistryChange {
public:
    RegistryChange() = default;

    static RegistryChange dpi(int dpi);
    static RegistryChange fontReplacement(const QString& font, const QString& replacement);
    static RegistryChange noFontReplacement(const QString& font);
    static RegistryChange dllOverride(const QString& dll, const QString& method);
    static RegistryChange noDllOverride(const QString& dll);
    static RegistryChange windowsVersion(const QString& code);

    /// Sets a value of any key; texts may hold whatever .reg files can.
    static RegistryChange text(const QString& key, const QString& name, const QString& value);
    static RegistryChange number(const QString& key, const QString& name, quint32 value);
    /// Sets or deletes what a manifest says.
    static RegistryChange value(const Manifest::RegistryValue& value);

    /// JSON with the keys "registry" (the entries of a .reg file) and "windows" (a version).
    static RegistryChange fromJson(const QJsonObject& object);
    QJsonObject toJson() const;

    bool isEmpty() const { return m_entries.isEmpty() && m_windows.isEmpty(); }

    /// This change followed by the other.
    RegistryChange then(const RegistryChange& other) const;

    QString windows() const { return m_windows; }
    bool hasEntries() const { return !m_entries.isEmpty(); }
    /// The entries as a .reg file for regedit.
    QByteArray file() const;

    /// The change that turns Windows 10 into Windows 11, for a Wine that does not know Windows 11 by name.
    static RegistryChange windows11OverWindows10();

private:
    QString m_entries;
    QString m_windows;
};
