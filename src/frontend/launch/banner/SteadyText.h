#pragma once

#include <QObject>
#include <QTimer>

/// Keeps a line of status readable: it changes at most every 400 ms, the latest text always arrives, and the
/// percentage of a step never falls. Empty text needs no time to be read.
class SteadyText : public QObject {
    Q_OBJECT
public:
    explicit SteadyText(QObject* parent);

    void set(const QString& text);

    /// Something new begins: what waits is shown now, whatever comes next at once, and it may count anew.
    void restart();

    /// Whether `next` is the text of `last` but for a lower percentage.
    static bool fallsBack(const QString& last, const QString& next);

    /// `text` with every percentage at its widest, to measure the room that the step will need.
    static QString widest(const QString& text);

Q_SIGNALS:
    void shown(const QString& text);

private:
    void show();

    QTimer m_pause;
    QString m_latest;
    bool m_waits = false;
};
