#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>
#include <optional>

namespace Fenk {

/// Lines of an INI-like file that survive being read and written: comments, unknown keys and lines that say
/// nothing stay where they are. A full key is its section and its name joined by a point; sections written
/// here are named after the key's first part. Values escape \n, \r, \t, the backslash and blanks at either
/// end.
class SettingsFile {
public:
    static constexpr qint64 MaxBytes = 1024 * 1024;

    /// Nothing for bytes that are no such file: not UTF-8, control characters, too long, or not one valid
    /// line.
    static std::optional<SettingsFile> parse(const QByteArray& bytes);

    QByteArray toBytes() const;

    int badLines() const;  ///< lines that are neither comment nor section nor key=value

    bool contains(const QString& key) const;
    QString value(const QString& key) const;  ///< the last one when a key stands twice
    void setValue(const QString& key, const QString& value);

private:
    enum class Kind { Other, Bad, Section, Entry };
    struct Line {
        Kind kind = Kind::Other;
        QString text;     ///< as it stands in the file
        QString section;  ///< the section that it stands in or opens
        QString key;      ///< full key of an entry
        QString value;    ///< unescaped value of an entry
    };

    static Line parseLine(const QString& text, const QString& section);
    int lastIndexOf(const QString& key) const;

    QVector<Line> m_lines;
};

}  // namespace Fenk
