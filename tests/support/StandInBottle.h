#pragma once

#include <QByteArray>
#include <QString>

namespace TestSupport {

/// A bottle's directory whose Wine is a shell script, run by the real launch script. The file "program" is
/// the piece of shell that the program of a launch runs; it may use `show` (shows a window until the file
/// "close" exists), `wait_for FILE` and $RUN (1 for the first launch). Wine prints the file "log<n>" in the
/// n-th launch.
class StandInBottle {
public:
    StandInBottle() = default;
    /// `data` is the directory of the user's data. An existing bottle is removed.
    StandInBottle(const QString& data, const QString& name);

    QString directory() const { return m_directory; }
    /// Writes a file of the bottle; does nothing for a default constructed object.
    void write(const QString& name, const QByteArray& content) const;

private:
    QString m_directory;
};

}  // namespace TestSupport
