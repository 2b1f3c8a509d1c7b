#include "bottleservice/jobs/ChangeSettingsJob.h"

#include <QDebug>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/wine/RegistryWriter.h"

using Fault = Answer::Fault;

ChangeSettingsJob::ChangeSettingsJob(const JobBottle& bottle, Change change, const RegistryChange& registry,
                                     Reply reply)
    : Job(std::move(reply)), m_bottle(bottle), m_change(std::move(change)), m_registry(registry) {}

void ChangeSettingsJob::start() {
    Answer failure;
    auto settings = m_bottle.load(&failure);
    if (!settings) {
        finish(failure);
        return;
    }
    m_before = settings->toText();
    m_registry = settings->pendingRegistry().then(m_registry);
    const Runner runner = m_bottle.runnerOf(*settings);
    if (!m_registry.isEmpty() && runner.wine.isEmpty()) {
        finish(Answer::failure(Fault::Failed,
                               Reason(Reason::NoRunner, {BottleName::shown(settings->runner())})));
        return;
    }
    m_change(*settings);
    settings->setPendingRegistry(m_registry);
    QString error;
    if (settings->toText() != m_before && !m_bottle.save(*settings, &error)) {
        finish(Answer::failure(Fault::Failed, error));
        return;
    }
    if (m_registry.isEmpty()) {
        finish(Answer::of());
        return;
    }
    m_writer = new RegistryWriter(runner, m_bottle.path(), m_registry, this);
    connect(m_writer, &RegistryWriter::finished, this, &ChangeSettingsJob::onWritten);
    m_writer->start();
}

void ChangeSettingsJob::cancel() {
    m_cancelled = true;
    if (m_writer)
        m_writer->cancel();
}

void ChangeSettingsJob::onWritten(const Reason& reason) {
    QString error;
    // Wine may have written a part of it.
    if (!reason.isEmpty() && m_cancelled) {
        finish(Answer::failure(Fault::Failed, "The service ends; its next start finishes the change."));
        return;
    }
    if (!reason.isEmpty()) {
        qWarning() << "settings of" << m_bottle.shownName() << "stay as they were:" << reason.text();
        const auto before = BottleYaml::parse(m_before, &error);
        if (before)
            m_bottle.save(*before, &error);
        finish(Answer::failure(Fault::Failed, reason));
        return;
    }
    Answer failure;
    auto settings = m_bottle.load(&failure);
    if (!settings) {
        finish(failure);
        return;
    }
    settings->setPendingRegistry({});
    if (m_bottle.save(*settings, &error))
        finish(Answer::of());
    else
        finish(Answer::failure(Fault::Failed, error));
}
