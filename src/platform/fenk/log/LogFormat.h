#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVector>

namespace Fenk {

/// A log line's format, parsed once. Placeholders:
/// %{time} or %{time}{QDateTime format}, %{type}, %{file} (name without directory), %{line},
/// %{function} (class and name only), %{Function} (whole signature), %{category}, %{message}, %%.
/// A width may follow a colon: %{type:7} pads on the left, %{type:-7} on the right. Line ends are
/// part of the format. An unknown placeholder is left unchanged.
class LogFormat {
public:
    explicit LogFormat(const QString& format = QString());

    QString text() const { return m_text; }

    /// One line in UTF-8.
    QByteArray format(const QDateTime& time, QtMsgType type, const char* file, int line, const char* function,
                      const QString& category, const QString& message) const;

    /// "void A::b(int) const" becomes "A::b": without return type, arguments, lambda or template suffix.
    static QString shortFunction(const char* function);

    static QString typeName(QtMsgType type);  ///< Debug, Info, Warning, Error, Fatal

private:
    enum class Field { Text, Time, Type, File, Line, Function, FullFunction, Category, Message };
    struct Part {
        Field field = Field::Text;
        QString argument;  ///< literal text or time format
        int width = 0;
    };

    static bool parsePlaceholder(const QString& text, int& position, Part& part);

    QString m_text;
    QVector<Part> m_parts;
};

}  // namespace Fenk
