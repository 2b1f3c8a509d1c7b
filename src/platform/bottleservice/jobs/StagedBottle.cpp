#include "bottleservice/jobs/StagedBottle.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <utility>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/files/FileTree.h"
#include "bottleservice/files/Reclaimer.h"
#include "bottleservice/files/WorkingDirectory.h"
#include "bottleservice/wine/LaunchData.h"
#include "bottleservice/wine/Templates.h"

StagedBottle::StagedBottle(const BottleStore& store, const QString& name, const Runner& runner,
                           Templates* templates, Reclaimer* reclaimer, QObject* parent)
    : QObject(parent),
      m_store(store),
      m_name(name),
      m_runner(runner),
      m_templates(templates),
      m_reclaimer(reclaimer) {}

void StagedBottle::start(Content content) {
    const QString target = m_store.pathOf(m_name);
    m_directory = WorkingDirectory::pathBeside(target, WorkingDirectory::CreatingPrefix);
    if (!QDir().mkpath(m_directory + "/logs")) {
        const int error = errno;
        Q_EMIT finished(
            Reason(Reason::CannotWrite, {QFileInfo(target).path(), QString::fromLocal8Bit(strerror(error))}));
        return;
    }
    qInfo() << "making bottle" << BottleName::shown(m_name) << "on" << m_runner.name << "in" << m_directory;
    m_templateKey = Templates::keyOf(m_runner);
    m_isWaiting = true;
    m_templates->obtain(m_runner, this, [this, content](const QString& path, const Reason& reason) {
        if (!std::exchange(m_isWaiting, false))
            return;
        if (path.isEmpty() || content == Content::Nothing)
            Q_EMIT finished(reason);
        else
            copy(path);
    });
}

void StagedBottle::cancel() {
    *m_cancelled = true;
    if (std::exchange(m_isWaiting, false))
        Q_EMIT finished(Reason::Cancelled);
}

void StagedBottle::copy(const QString& templatePath) {
    m_templates->run(
        this,
        [templatePath, target = m_directory, cancelled = m_cancelled](const std::atomic_bool&) {
            return FileTree::copy(templatePath, target, *cancelled);
        },
        [this](const QString& fault) {
            Q_EMIT finished(*m_cancelled      ? Reason(Reason::Cancelled)
                            : fault.isEmpty() ? Reason()
                                              : Reason(Reason::FilesNotWritten, {fault}));
        });
}

BottleYaml StagedBottle::freshSettings() const {
    BottleYaml settings = BottleYaml::fresh(m_name, m_runner.name, QDateTime::currentDateTime());
    settings.set("Template", m_templateKey);
    return settings;
}

Reason StagedBottle::place(const BottleYaml& settings) {
    const QString target = m_store.pathOf(m_name);
    QString error;
    if (!BottleStore::saveTo(m_directory, settings, &error))
        return error;
    const QJsonObject data = LaunchData::render(target, settings.record(), m_runner);
    if (!LaunchData::write(m_directory, data, &error))
        return error;
    return WorkingDirectory::moveInto(m_directory, target);
}

void StagedBottle::discard() {
    if (!m_directory.isEmpty() && QFileInfo::exists(m_directory))
        m_reclaimer->remove(m_directory);
}
