#include "bottleservice/requests/TemplatePreparation.h"

#include <QDebug>

#include "bottleservice/requests/BottleEngine.h"

namespace {

const char SecondsVariable[] = "CELLARIX_PREPARE_SECONDS";
constexpr int DefaultSeconds = 2;
constexpr int CheckMs = 500;

}  // namespace

TemplatePreparation::TemplatePreparation(BottleEngine* engine, std::function<bool()> isQuiet, QObject* parent)
    : QObject(parent), m_engine(engine), m_isQuiet(std::move(isQuiet)) {
    connect(&m_timer, &QTimer::timeout, this, &TemplatePreparation::check);
}

void TemplatePreparation::start() {
    bool isNumber = false;
    const int given = qEnvironmentVariableIntValue(SecondsVariable, &isNumber);
    const int seconds = isNumber ? given : DefaultSeconds;
    const auto runner = m_engine->bottles().runners().find(Runners::DefaultName);
    if (seconds >= 0 && runner && m_engine->templates()->isMissing(*runner))
        m_timer.start(seconds * 1000);
}

void TemplatePreparation::touch() {
    if (!m_timer.isActive())
        return;
    if (m_hasBegun)
        QTimer::singleShot(0, this, &TemplatePreparation::check);  // when the request is in its queue
    else
        m_timer.start();
}

void TemplatePreparation::stop() {
    m_timer.stop();
}

void TemplatePreparation::check() {
    if (!m_timer.isActive())
        return;
    if (m_engine->isClosing()) {
        stop();
        return;
    }
    Templates* templates = m_engine->templates();
    if (!m_isQuiet()) {
        templates->pausePreparation();
        m_timer.start(qMax(CheckMs, m_timer.interval()));
        return;
    }
    if (m_hasBegun) {
        templates->resumePreparation();
        return;
    }
    const auto runner = m_engine->bottles().runners().find(Runners::DefaultName);
    if (!runner || !templates->isMissing(*runner)) {
        stop();
        return;
    }
    m_hasBegun = true;
    m_timer.start(CheckMs);
    templates->prepare(*runner, this, [this](const QString&, const Reason&) { stop(); });
}
