#include "launch/banner/LogsWidget.h"

#include <QDateTime>

LogsWidget::LogsWidget(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
}

void LogsWidget::appendLine(const QString& text, int level) {
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    const QStringList lines = text.split('\n');
    for (const QString& line : lines) {
        m_lines.append({line.toUtf8(), now, level});
        appendPlainText(line);
    }
}

QStringList LogsWidget::lastLines(int count) const {
    QStringList result;
    for (int i = qMax(0, m_lines.size() - count); i < m_lines.size(); ++i)
        result.append(QString::fromUtf8(m_lines[i].text));
    return result;
}
