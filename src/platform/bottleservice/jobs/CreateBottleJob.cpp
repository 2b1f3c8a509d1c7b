#include "bottleservice/jobs/CreateBottleJob.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <cerrno>
#include <cstring>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/files/FileTree.h"
#include "bottleservice/files/FullDisk.h"
#include "bottleservice/files/Reclaimer.h"
#include "bottleservice/files/WorkingDirectory.h"
#include "bottleservice/wine/LaunchData.h"
#include "bottleservice/wine/Templates.h"

namespace {

Answer refusal(const Reason& reason) {
    const QJsonObject answer{{"ok", false}, {"error", reason.text()}, {"reasons", reason.toJson()}};
    return Answer::of(QJsonDocument(answer).toJson(QJsonDocument::Compact));
}

}  // namespace

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
        fail(m_runnerName == Runners::DefaultName
                 ? Reason(Reason::NoWine)
                 : Reason(Reason::NoRunner, {BottleName::shown(m_runnerName)}));
        return;
    }
    m_runner = *runner;
    const QString target = m_store.pathOf(m_name);
    m_workingDirectory = WorkingDirectory::pathBeside(target, WorkingDirectory::CreatingPrefix);
    if (!QDir().mkpath(m_workingDirectory + "/logs")) {
        const int error = errno;
        fail(
            Reason(Reason::CannotWrite, {QFileInfo(target).path(), QString::fromLocal8Bit(strerror(error))}));
        return;
    }
    qInfo() << "making bottle" << BottleName::shown(m_name) << "on" << m_runner.name << "in"
            << m_workingDirectory;
    m_templateKey = Templates::keyOf(m_runner);
    m_templates->obtain(m_runner, this,
                        [this](const QString& path, const Reason& reason) { onTemplate(path, reason); });
}

void CreateBottleJob::cancel() {
    *m_cancelled = true;
}

void CreateBottleJob::onTemplate(const QString& path, const Reason& reason) {
    if (path.isEmpty() || *m_cancelled) {
        fail(path.isEmpty() ? reason : Reason(Reason::Cancelled));
        return;
    }
    m_templates->run(
        this,
        [path, target = m_workingDirectory, cancelled = m_cancelled](const std::atomic_bool&) {
            return FileTree::copy(path, target, *cancelled);
        },
        [this](const QString& fault) { onCopied(fault); });
}

void CreateBottleJob::onCopied(const QString& errorText) {
    const QString fault = errorText.isEmpty() ? complete() : errorText;
    if (fault.isEmpty())
        succeed(true, m_runner.name);
    else
        fail(fault);
}

QString CreateBottleJob::complete() {
    const QString target = m_store.pathOf(m_name);
    BottleYaml settings = BottleYaml::fresh(m_name, m_runner.name, QDateTime::currentDateTime());
    settings.set("Template", m_templateKey);
    QString error;
    if (!BottleStore::saveTo(m_workingDirectory, settings, &error))
        return error;
    const QJsonObject data = LaunchData::render(target, settings.record(), m_runner);
    if (!LaunchData::write(m_workingDirectory, data, &error))
        return error;
    return WorkingDirectory::moveInto(m_workingDirectory, target);
}

void CreateBottleJob::succeed(bool created, const QString& runner) {
    if (created)
        qInfo() << "made bottle" << BottleName::shown(m_name);
    const QJsonObject answer{
        {"ok", true}, {"created", created}, {"path", m_store.pathOf(m_name)}, {"runner", runner}};
    finish(Answer::of(QJsonDocument(answer).toJson(QJsonDocument::Compact)));
}

void CreateBottleJob::fail(const Reason& reason) {
    const Reason told = *m_cancelled ? reason : FullDisk::explain(m_store.root(), reason);
    qWarning() << "bottle" << BottleName::shown(m_name) << "was not made:" << told.text();
    if (!m_workingDirectory.isEmpty() && QFileInfo::exists(m_workingDirectory))
        m_reclaimer->remove(m_workingDirectory);
    finish(refusal(told));
}
