#pragma once

#include <QDate>
#include <QStringList>

#include "fenk/log/FileAppender.h"

namespace Fenk {

/// A file that starts anew each day. The old one is renamed to "<file>.yyyy-MM-dd" after the day that it
/// holds (with ".2" and so on should that name be taken), and the oldest are removed until no more than the
/// limit are left, the current one counted. Days are those of the messages' times.
class RollingFileAppender : public FileAppender {
public:
    enum DatePattern { Daily };

    explicit RollingFileAppender(const QString& fileName);

    void setDatePattern(DatePattern pattern);
    DatePattern datePattern() const { return m_pattern; }

    /// Files in all; 0 (the default) keeps everything.
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
    QDate m_day;  ///< day that the current file holds
};

}  // namespace Fenk
