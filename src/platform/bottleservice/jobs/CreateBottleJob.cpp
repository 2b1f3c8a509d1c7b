#include "bottleservice/jobs/CreateBottleJob.h"

#include <QDebug>
#include <QJsonObject>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/files/FullDisk.h"
#include "bottleservice/jobs/StagedBottle.h"

CreateBottleJob::CreateBottleJob(const BottleStore& store, const QString& name, const QString& runner,
                                 const Runners& runners, Templates* templates, Reclaimer* reclaimer,
                                 Reply reply)
    : Job(std::move(reply)),
      m_store(store),
      m_name(name),
      m_runnerName(runner.isEmpty() ? QString(Runners::DefaultName) : runner),
      m_runners(runners),
      m_templates(templates),
      m_reclaimer(reclaimer) {}

void CreateBottleJob::start() {
    const BottleStore::State state = m_store.state(m_name);
    if (state == BottleStore::State::Present) {
        QString error;
        const auto settings = m_store.load(m_name, &error);
        qInfo() << "bottle" << BottleName::shown(m_name) << "exists already and is left as it is" << error;
        succeed(false, settings ? settings->runner() : QString());
        return;
    }
    if (state == BottleStore::State::Foreign) {
        fail(m_store.check(m_name));
        return;
    }
    const auto runner = m_runners.find(m_runnerName);
    if (!runner) {
        fail(m_runners.missing(m_runnerName));
        return;
    }
    m_staged = new StagedBottle(m_store, m_name, *runner, m_templates, m_reclaimer, this);
    connect(m_staged, &StagedBottle::finished, this, &CreateBottleJob::onCopied);
    m_staged->start();
}

void CreateBottleJob::cancel() {
    m_cancelled = true;
    if (m_staged)
        m_staged->cancel();
}

void CreateBottleJob::onCopied(const Reason& reason) {
    const Reason fault = reason.isEmpty() ? m_staged->place(m_staged->freshSettings()) : reason;
    if (fault.isEmpty())
        succeed(true, m_staged->runner().name);
    else
        fail(fault);
}

void CreateBottleJob::succeed(bool created, const QString& runner) {
    if (created)
        qInfo() << "made bottle" << BottleName::shown(m_name);
    finish(Answer::of(JsonText::compact(QJsonObject{
        {"ok", true}, {"created", created}, {"path", m_store.pathOf(m_name)}, {"runner", runner}})));
}

void CreateBottleJob::fail(const Reason& reason) {
    const Reason told = m_cancelled ? reason : FullDisk::explain(m_store.root(), reason);
    qWarning() << "bottle" << BottleName::shown(m_name) << "was not made:" << told.text();
    if (m_staged)
        m_staged->discard();
    finish(Answer::of(
        JsonText::compact(QJsonObject{{"ok", false}, {"error", told.text()}, {"reasons", told.toJson()}})));
}
