#include "fenk/log/RollingFileAppender.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>

namespace Fenk {
namespace {

QString dayFormat() {
    return QStringLiteral("yyyy-MM-dd");
}

}  // namespace

RollingFileAppender::RollingFileAppender(const QString& fileName) : FileAppender(fileName) {}

void RollingFileAppender::setDatePattern(DatePattern pattern) {
    m_pattern = pattern;
}

void RollingFileAppender::setLogFilesLimit(int limit) {
    m_limit = limit;
}

void RollingFileAppender::prepare(const QDateTime& time) {
    const QDate day = time.date();
    if (!m_day.isValid()) {
        // A file of an earlier run belongs to the day of its last change.
        const QFileInfo file(fileName());
        m_day = file.isFile() && file.size() > 0 ? file.lastModified().date() : day;
        removeOldFiles();
    }
    // A late message of the day before, or a clock set back, does not roll the file.
    if (day > m_day)
        roll(day);
}

QString RollingFileAppender::rolledName(const QDate& day) const {
    const QString name = fileName() + '.' + day.toString(dayFormat());
    QString candidate = name;
    for (int i = 2; QFileInfo::exists(candidate); ++i)
        candidate = name + '.' + QString::number(i);
    return candidate;
}

void RollingFileAppender::roll(const QDate& day) {
    const QDate old = m_day;
    m_day = day;
    if (!QFileInfo(fileName()).isFile())
        return;
    closeFile();
    if (!QFile::rename(fileName(), rolledName(old)))
        notice(QStringLiteral("cannot rename the log file %1").arg(fileName()));
    removeOldFiles();
}

QStringList RollingFileAppender::rolledFiles() const {
    const QFileInfo file(fileName());
    const QRegularExpression pattern("\\A" + QRegularExpression::escape(file.fileName()) +
                                     "\\.(\\d{4}-\\d\\d-\\d\\d)(?:\\.(\\d{1,6}))?\\z");
    QVector<QPair<QPair<QDate, int>, QString>> found;
    const QStringList names = file.absoluteDir().entryList(QDir::Files | QDir::Hidden);
    for (const QString& name : names) {
        const QRegularExpressionMatch match = pattern.match(name);
        const QDate day = QDate::fromString(match.captured(1), dayFormat());
        if (match.hasMatch() && day.isValid())
            found.append({{day, match.captured(2).toInt()}, file.absoluteDir().filePath(name)});
    }
    std::sort(found.begin(), found.end());
    QStringList files;
    for (const auto& item : qAsConst(found))
        files.append(item.second);
    return files;
}

void RollingFileAppender::removeOldFiles() const {
    if (m_limit <= 0)
        return;
    QStringList files = rolledFiles();
    while (files.size() > m_limit - 1)
        QFile::remove(files.takeFirst());
}

}  // namespace Fenk
