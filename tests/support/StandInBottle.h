#pragma once

#include <QByteArray>
#include <QString>

namespace TestSupport {

/// A bottle's directory with a shell script for its Wine, which the real launch script runs. What the program
/// of a launch is to do stands in the file "program", a piece of shell that knows `show` (a window comes up,
/// and stays until "close" is there), `wait_for FILE` and $RUN (1 for the first launch); what Wine says of
/// the n-th launch in "log<n>".
class StandInBottle {
public:
    StandInBottle() = default;
    /// `data` is the directory of the user's data. What lay there before goes away.
    StandInBottle(const QString& data, const QString& name);

    QString directory() const { return m_directory; }
    /// Nothing for one that was never made.
    void write(const QString& name, const QByteArray& content) const;

private:
    QString m_directory;
};

}  // namespace TestSupport
