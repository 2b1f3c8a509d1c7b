#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QVariant>
#include <memory>

#include "fenk/settings/SettingsDescription.h"

namespace Fenk {

/// The options that a JSON description defines, with their values in one INI-like file. Use each object in
/// one thread.
///
/// An option that was never set has its default from the description; an unknown key returns an invalid
/// QVariant and logs a warning. Changes are kept in memory and written by the event loop, by sync() and by
/// the destructor. Writing replaces the file atomically and keeps unknown lines and values that another
/// process has changed under other keys. An invalid file is renamed to "<file>.broken".
class Settings : public QObject {
    Q_OBJECT
public:
    /// `jsonPath` may be a resource. Null, with the reason in `error`, if the description is invalid; an
    /// unreadable INI file is no error.
    static std::unique_ptr<Settings> fromJson(const QString& jsonPath, const QString& iniPath,
                                              QString* error = nullptr);
    ~Settings() override;

    QStringList keys() const;
    QVariant option(const QString& key) const;
    QVariant getOption(const QString& key) const { return option(key); }

    /// Converts the value to the type of the option; ignores impossible values and unknown keys with a
    /// warning.
    void setOption(const QString& key, const QVariant& value);

    /// Returns false, with a warning, if the file could not be written; the values stay in memory and the
    /// next call retries.
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
