#pragma once

#include <QDate>
#include <QStringList>

#include "fenk/log/FileAppender.h"

namespace Fenk {

/// A log file per day. The file of an earlier day is renamed to "<file>.yyyy-MM-dd" (with ".2" and so on if
/// that exists), and the oldest files are removed until the limit is met, which includes the current file.
/// Days are those of the messages' times.
class RollingFileAppender : public FileAppender {
public:
    enum DatePattern { Daily };

    explicit RollingFileAppender(const QString& fileName);

    void setDatePattern(DatePattern pattern);
    DatePattern datePattern() const { return m_pattern; }

    /// Number of files including the current one; 0 (the default) keeps all.
    void setLogFilesLimit(int limit);
    int logFilesLimit() const { return m_limit; }

protected:
    void prepare(const QDateTime& time) override;

private:
    QString rolledName(const QDate& day) const;
    QStringList rolledFiles() const;  ///< oldest first
    void roll(const QDate& day);
    void removeOldFiles() const;

    DatePattern m_pattern = Daily;
    int m_limit = 0;
    QDate m_day;  ///< day of the current file's messages
};

}  // namespace Fenk
