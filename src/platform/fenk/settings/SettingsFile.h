#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>
#include <optional>

namespace Fenk {

/// The lines of an INI-like file, preserved when it is read and written: comments, unknown keys and invalid
/// lines keep their place. A full key is section and name joined by a point; new sections are named after the
/// first part of the key. Values escape
/// , \r, \t, the backslash and blanks at either end.
class SettingsFile {
public:
    static constexpr qint64 MaxBytes = 1024 * 1024;

    /// Empty if the bytes are no such file: not UTF-8, control characters, too long, or no valid line.
    static std::optional<SettingsFile> parse(const QByteArray& bytes);

    QByteArray toBytes() const;

    int badLines() const;  ///< lines that are neither comment nor section nor key=value

    bool contains(const QString& key) const;
    QString value(const QString& key) const;  ///< the last one if a key occurs twice
    void setValue(const QString& key, const QString& value);

private:
    enum class Kind { Other, Bad, Section, Entry };
    struct Line {
        Kind kind = Kind::Other;
        QString text;     ///< as in the file
        QString section;  ///< the section that contains the line or starts with it
        QString key;      ///< full key of an entry
        QString value;    ///< unescaped value of an entry
    };

    static Line parseLine(const QString& text, const QString& section);
    int lastIndexOf(const QString& key) const;

    QVector<Line> m_lines;
};

}  // namespace Fenk
