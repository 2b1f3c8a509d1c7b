#include "bottleservice/jobs/RenewBottleJob.h"

#include <QDebug>

#include "bottleservice/wine/SlimPrefix.h"
#include "bottleservice/wine/Templates.h"

RenewBottleJob::RenewBottleJob(const JobBottle& bottle) : Job([](const Answer&) {}), m_bottle(bottle) {}

void RenewBottleJob::start() {
    Answer failure;
    const auto settings = m_bottle.load(&failure);
    const QString old = settings ? settings->templateKey() : QString();
    const Runner runner = settings ? m_bottle.runnerOf(*settings) : Runner();
    const QString key = Templates::keyOf(runner);
    if (old.isEmpty() || key.isEmpty() || old == key) {
        finish(failure);
        return;
    }
    qInfo() << "the Wine of" << m_bottle.shownName() << "has changed; renewing the bottle's copies";
    Templates* templates = m_bottle.templates();
    templates->obtain(runner, this, [this, templates, old, key](const QString& path, const Reason& reason) {
        if (path.isEmpty()) {
            onRenewed(key, reason.text());
            return;
        }
        const QString prefix = m_bottle.path();
        templates->run(
            this,
            [prefix, before = templates->pathOf(old), path](const std::atomic_bool& cancelled) {
                return SlimPrefix::renew(prefix, before, path, cancelled);
            },
            [this, key](const QString& fault) { onRenewed(key, fault); });
    });
}

void RenewBottleJob::onRenewed(const QString& key, const QString& errorText) {
    QString error = errorText;
    Answer failure;
    auto settings = m_bottle.load(&failure);
    if (error.isEmpty() && settings) {
        settings->set("Template", key);
        m_bottle.save(*settings, &error);
    }
    if (!error.isEmpty())
        qWarning() << "bottle" << m_bottle.shownName() << "was not renewed:" << error;
    finish(Answer::of());
}
