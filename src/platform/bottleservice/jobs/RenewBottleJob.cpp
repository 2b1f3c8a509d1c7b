#include "bottleservice/jobs/RenewBottleJob.h"

#include <QDebug>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/wine/SlimPrefix.h"
#include "bottleservice/wine/Templates.h"

RenewBottleJob::RenewBottleJob(BottleEngine* engine, const QString& bottle)
    : Job([](const Answer&) {}), m_engine(engine), m_bottle(bottle) {}

void RenewBottleJob::start() {
    Answer failure;
    const auto settings = m_engine->loaded(m_bottle, &failure);
    const QString old = settings ? settings->templateKey() : QString();
    const Runner runner = settings ? m_engine->runnerOf(*settings) : Runner();
    const QString key = Templates::keyOf(runner);
    if (old.isEmpty() || key.isEmpty() || old == key) {
        finish(failure);
        return;
    }
    qInfo() << "the Wine of" << BottleName::shown(m_bottle) << "has changed; renewing the bottle's copies";
    Templates* templates = m_engine->templates();
    templates->obtain(runner, this, [this, templates, old, key](const QString& path, const Reason& reason) {
        if (path.isEmpty()) {
            onRenewed(key, reason.text());
            return;
        }
        const QString prefix = m_engine->store().pathOf(m_bottle);
        templates->run(
            this,
            [prefix, before = templates->pathOf(old), path](const std::atomic_bool& cancelled) {
                return SlimPrefix::renew(prefix, before, path, cancelled);
            },
            [this, key](const QString& fault) { onRenewed(key, fault); });
    });
}

void RenewBottleJob::onRenewed(const QString& key, const QString& sentence) {
    QString error = sentence;
    Answer failure;
    auto settings = m_engine->loaded(m_bottle, &failure);
    if (error.isEmpty() && settings) {
        settings->set("Template", key);
        m_engine->saveSettings(m_bottle, *settings, &error);
    }
    if (!error.isEmpty())
        qWarning() << "bottle" << BottleName::shown(m_bottle) << "was not renewed:" << error;
    finish(Answer::of());
}
