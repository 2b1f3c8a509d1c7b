#pragma once

#include <QHash>
#include <QLocale>
#include <QString>
#include <QStringList>
#include <QVector>

namespace Fenk {

/// A desktop entry file, read once. Values are returned unescaped. If a line is invalid, the status is
/// FormatError and the valid part is available. Files over 1 MiB are not read.
class DesktopEntry {
public:
    enum Status { NoError, AccessError, FormatError };

    explicit DesktopEntry(const QString& path);

    Status status() const { return m_status; }

    QStringList allGroups() const;  ///< in the order of the file
    QStringList keys(const QString& group = QStringLiteral("Desktop Entry")) const;
    bool contains(const QString& key, const QString& group = QStringLiteral("Desktop Entry")) const;

    QString stringValue(const QString& key, const QString& group = QStringLiteral("Desktop Entry"),
                        const QString& defaultValue = QString()) const;
    QStringList stringListValue(const QString& key,
                                const QString& group = QStringLiteral("Desktop Entry")) const;

    /// The value for a locale: key[lang_COUNTRY], key[lang], then key.
    QString localizedValue(const QString& key, const QString& group = QStringLiteral("Desktop Entry"),
                           const QString& defaultValue = QString(), const QLocale& locale = QLocale()) const;

private:
    struct Group {
        QString name;
        QStringList keys;
        QHash<QString, QString> values;  ///< as written
    };

    void parse(const QString& text);
    bool parseEntry(const QString& line, Group& group) const;
    const Group* group(const QString& name) const;

    Status m_status = NoError;
    QVector<Group> m_groups;
};

}  // namespace Fenk
