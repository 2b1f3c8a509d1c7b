#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

/// A change of a bottle's registry that can be kept in bottle.yml until it is done, and done twice without
/// harm. Texts must have passed SettingRules.
class RegistryChange {
public:
    RegistryChange() = default;

    static RegistryChange dpi(int dpi);
    static RegistryChange fontReplacement(const QString& font, const QString& replacement);
    static RegistryChange noFontReplacement(const QString& font);
    static RegistryChange windowsVersion(const QString& code);

    /// A value under any key; texts may hold whatever .reg files can.
    static RegistryChange text(const QString& key, const QString& name, const QString& value);
    static RegistryChange number(const QString& key, const QString& name, quint32 value);

    /// The keys "registry" (the entries of a .reg file) and "windows" (a version).
    static RegistryChange fromJson(const QJsonObject& object);
    QJsonObject toJson() const;

    bool isEmpty() const { return m_entries.isEmpty() && m_windows.isEmpty(); }

    /// This change, and then the other.
    RegistryChange then(const RegistryChange& other) const;

    QString windows() const { return m_windows; }
    bool hasEntries() const { return !m_entries.isEmpty(); }
    /// A .reg file as regedit reads it.
    QByteArray file() const;

    /// What a Wine that does not know Windows 11 by name is told after it was set to Windows 10.
    static RegistryChange windows11OverWindows10();

private:
    QString m_entries;
    QString m_windows;
};
