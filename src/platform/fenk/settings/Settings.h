#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QVariant>
#include <memory>

#include "fenk/settings/SettingsDescription.h"

namespace Fenk {

/// The options that a JSON description names, with their values in one INI-like file. Lives on one thread.
///
/// A value that was never set reads as the description's default, an unknown key as an invalid QVariant with
/// a warning. Changes are held in memory, written when the event loop gets to it, by sync() and by the
/// destructor. Writing replaces the file atomically, keeps lines that this class does not know, and keeps
/// what someone else has changed meanwhile under other keys. A file that cannot be understood is set aside as
/// "<file>.broken".
class Settings : public QObject {
    Q_OBJECT
public:
    /// jsonPath may be a resource. Null with the reason in error when the description is wrong; an unreadable
    /// ini file is no error.
    static std::unique_ptr<Settings> fromJson(const QString& jsonPath, const QString& iniPath,
                                              QString* error = nullptr);
    ~Settings() override;

    QStringList keys() const;
    QVariant option(const QString& key) const;
    QVariant getOption(const QString& key) const { return option(key); }

    /// Converts value to the option's type; an impossible value and an unknown key are refused with a
    /// warning.
    void setOption(const QString& key, const QVariant& value);

    /// False, with a warning, when the file could not be written; the values stay and the next call tries
    /// again.
    bool sync();

Q_SIGNALS:
    void valueChanged(const QString& key, const QVariant& value);

private:
    Settings(SettingsDescription description, const QString& iniPath);
    void load();
    void scheduleSync();

    SettingsDescription m_description;
    QString m_iniPath;
    QHash<QString, QVariant> m_values;
    QSet<QString> m_changed;
    bool m_syncScheduled = false;
};

}  // namespace Fenk
