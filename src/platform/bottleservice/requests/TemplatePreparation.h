#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

class BottleEngine;

/// Makes the template of the default runner in advance, once in a service's life, when the service has not
/// been called for a while. Pauses while other requests are carried out; a bottle on that runner takes the
/// work over. Lives in the main thread.
class TemplatePreparation : public QObject {
    Q_OBJECT

public:
    /// `isQuiet` tells whether no request is being carried out.
    TemplatePreparation(BottleEngine* engine, std::function<bool()> isQuiet, QObject* parent = nullptr);

    /// The variable CELLARIX_PREPARE_SECONDS sets how long the service must be quiet before: by default 2; a
    /// negative number means never.
    void start();

public Q_SLOTS:
    /// A method was called.
    void touch();
    /// Begins no work any more.
    void stop();

private:
    void check();

    BottleEngine* m_engine;
    std::function<bool()> m_isQuiet;
    QTimer m_timer;
    bool m_hasBegun = false;
};
