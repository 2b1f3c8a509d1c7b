#include "launch/banner/SteadyText.h"

#include <QRegularExpression>

namespace {

constexpr int PauseMs = 400;

const QRegularExpression& percentage() {
    static const QRegularExpression pattern("(\\d{1,3})%");
    return pattern;
}

}  // namespace

SteadyText::SteadyText(QObject* parent) : QObject(parent) {
    m_pause.setSingleShot(true);
    m_pause.setInterval(PauseMs);
    connect(&m_pause, &QTimer::timeout, this, [this] {
        if (m_isWaiting)
            show();
    });
}

bool SteadyText::fallsBack(const QString& last, const QString& next) {
    const QRegularExpressionMatch before = percentage().match(last);
    const QRegularExpressionMatch after = percentage().match(next);
    return before.hasMatch() && after.hasMatch() && widest(last) == widest(next) &&
           after.captured(1).toInt() < before.captured(1).toInt();
}

QString SteadyText::widest(const QString& text) {
    return QString(text).replace(percentage(), "100%");
}

void SteadyText::set(const QString& text) {
    if (fallsBack(m_latest, text))
        return;
    m_latest = text;
    m_isWaiting = m_pause.isActive();
    if (!m_isWaiting)
        show();
}

void SteadyText::restart() {
    m_pause.stop();
    if (m_isWaiting)
        show();
    m_pause.stop();
    m_latest.clear();
}

void SteadyText::show() {
    m_isWaiting = false;
    if (!m_latest.isEmpty())
        m_pause.start();
    Q_EMIT shown(m_latest);
}
