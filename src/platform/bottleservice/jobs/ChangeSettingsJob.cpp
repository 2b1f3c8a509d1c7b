#include "bottleservice/jobs/ChangeSettingsJob.h"

#include <QDebug>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/wine/RegistryWriter.h"

using Fault = Answer::Fault;

ChangeSettingsJob::ChangeSettingsJob(BottleEngine* engine, const QString& bottle, Change change,
                                     const RegistryChange& registry, Reply reply)
    : Job(std::move(reply)),
      m_engine(engine),
      m_bottle(bottle),
      m_change(std::move(change)),
      m_registry(registry) {}

void ChangeSettingsJob::start() {
    Answer failure;
    auto settings = m_engine->loaded(m_bottle, &failure);
    if (!settings) {
        finish(failure);
        return;
    }
    m_before = settings->toText();
    m_registry = settings->pendingRegistry().then(m_registry);
    const Runner runner = m_engine->runnerOf(*settings);
    if (!m_registry.isEmpty() && runner.wine.isEmpty()) {
        finish(Answer::failure(Fault::Failed,
                               Reason(Reason::NoRunner, {BottleName::shown(settings->runner())})));
        return;
    }
    m_change(*settings);
    settings->setPendingRegistry(m_registry);
    QString error;
    if (settings->toText() != m_before && !m_engine->saveSettings(m_bottle, *settings, &error)) {
        finish(Answer::failure(Fault::Failed, error));
        return;
    }
    if (m_registry.isEmpty()) {
        finish(Answer::of());
        return;
    }
    m_writer = new RegistryWriter(runner, m_engine->store().pathOf(m_bottle), m_registry, this);
    connect(m_writer, &RegistryWriter::finished, this, &ChangeSettingsJob::onWritten);
    m_writer->start();
}

void ChangeSettingsJob::cancel() {
    m_cancelled = true;
    if (m_writer)
        m_writer->cancel();
}

void ChangeSettingsJob::onWritten(const QString& sentence) {
    QString error;
    // Wine may have written a part of it.
    if (!sentence.isEmpty() && m_cancelled) {
        finish(Answer::failure(Fault::Failed, "The service ends; its next start finishes the change."));
        return;
    }
    if (!sentence.isEmpty()) {
        qWarning() << "settings of" << BottleName::shown(m_bottle) << "stay as they were:" << sentence;
        const auto before = BottleYaml::parse(m_before, &error);
        if (before)
            m_engine->saveSettings(m_bottle, *before, &error);
        finish(Answer::failure(Fault::Failed, sentence));
        return;
    }
    Answer failure;
    auto settings = m_engine->loaded(m_bottle, &failure);
    if (!settings) {
        finish(failure);
        return;
    }
    settings->setPendingRegistry({});
    if (m_engine->saveSettings(m_bottle, *settings, &error))
        finish(Answer::of());
    else
        finish(Answer::failure(Fault::Failed, error));
}
