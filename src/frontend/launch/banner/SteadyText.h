#pragma once

#include <QObject>
#include <QTimer>

/// Keeps a status line readable: it changes at most every 400 ms, the latest text is always shown in the end,
/// and the percentage of a step never falls. After an empty text the next one is shown at once.
class SteadyText : public QObject {
    Q_OBJECT
public:
    explicit SteadyText(QObject* parent);

    void set(const QString& text);

    /// A new phase begins: shows a waiting text now and the next one without delay; its percentage may be
    /// lower.
    void restart();

    /// Whether `next` differs from `last` only by a lower percentage.
    static bool fallsBack(const QString& last, const QString& next);

    /// `text` with every percentage replaced by 100 %, to measure the width that the step needs at most.
    static QString widest(const QString& text);

Q_SIGNALS:
    void shown(const QString& text);

private:
    void show();

    QTimer m_pause;
    QString m_latest;
    bool m_isWaiting = false;
};
