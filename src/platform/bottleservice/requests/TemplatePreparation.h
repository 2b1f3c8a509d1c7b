#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

class BottleEngine;

/// Makes the template of the default runner before the first bottle needs it, once in a service's life, when
/// nobody has asked the service for anything for a while. Other work of the user stops it until that is done;
/// a bottle on that runner takes it over. Lives in the main thread.
class TemplatePreparation : public QObject {
    Q_OBJECT

public:
    /// `isQuiet` tells that the user has nothing under way.
    TemplatePreparation(BottleEngine* engine, std::function<bool()> isQuiet, QObject* parent = nullptr);

    /// CELLARIX_PREPARE_SECONDS in the environment says how long the service has to be quiet before: 2 if it
    /// is not set; nothing is prepared if it is negative.
    void start();

public Q_SLOTS:
    /// Somebody has asked for something.
    void touch();
    /// Begins nothing any more.
    void stop();

private:
    void look();

    BottleEngine* m_engine;
    std::function<bool()> m_isQuiet;
    QTimer m_timer;
    bool m_hasBegun = false;
};
