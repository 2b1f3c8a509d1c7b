#pragma once

#include <QByteArray>
#include <QStringList>

/// Makes lines of what a program prints on one stream, in whatever pieces the bytes come: a script, Wine, a
/// packager. The bytes are read as UTF-8; what is none becomes the replacement character. Colour and cursor
/// sequences of terminals and other control characters are removed; of a line that was overwritten with
/// carriage returns the last state remains.
class LogLineReader {
public:
    static constexpr int MaxLineBytes = 8192;  ///< what is longer becomes several lines

    /// The lines that are complete now.
    QStringList add(const QByteArray& bytes);

    /// The incomplete line at the end of the stream, if there is one.
    QStringList rest();

private:
    QByteArray m_partial;
};
