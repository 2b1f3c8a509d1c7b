#pragma once

#include <QByteArray>
#include <QStringList>

/// Makes whole, plain lines of what one stream of a script prints, in whatever pieces it comes: UTF-8,
/// without the sequences that colour a terminal and without other control characters. Of a line that was
/// overwritten with carriage returns the last state remains. A line is cut after MaxLineBytes.
class ScriptOutput {
public:
    static constexpr int MaxLineBytes = 8192;

    /// The lines that are whole now.
    QStringList add(const QByteArray& bytes);

    /// What the stream ended with, if that was no whole line.
    QStringList rest();

private:
    QByteArray m_partial;
};
