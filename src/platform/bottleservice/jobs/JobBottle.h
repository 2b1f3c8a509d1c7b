#pragma once

#include <QStringList>
#include <functional>
#include <optional>

#include "bottleservice/bottles/BottleYaml.h"
#include "bottleservice/result/Answer.h"
#include "bottleservice/wine/Runners.h"
#include "bottleservice/wine/RunningPrograms.h"

class BottleAccess;
class QObject;
class Reclaimer;
class Templates;

/// One bottle as its jobs see it: where it lies, its settings, the Wine that it runs on and what runs in it.
/// A value that can be copied; the objects behind it belong to BottleEngine and outlive every job. For the
/// main thread.
class JobBottle {
public:
    JobBottle(const QString& name, const BottleAccess* bottles, Templates* templates, Reclaimer* reclaimer)
        : m_name(name), m_bottles(bottles), m_templates(templates), m_reclaimer(reclaimer) {}

    QString name() const { return m_name; }
    /// The name as log lines and error texts have it.
    QString shownName() const;
    QString path() const;
    Templates* templates() const { return m_templates; }

    /// The functions of BottleAccess for this bottle.
    Answer check() const;
    std::optional<BottleYaml> load(Answer* failure) const;
    bool save(const BottleYaml& settings, QString* error) const;
    Runner runnerOf(const BottleYaml& settings) const;
    QStringList runningPrograms() const;
    void waitForPrograms(QObject* context, const std::function<void(const QStringList& running)>& then,
                         int limitMs = RunningPrograms::GraceMs) const;

    /// Ends all processes in the bottle, but no launch scripts: those that live wait until the installation
    /// is over. `then` gets whether nothing is left; not called when context has been destroyed by then.
    void stopProcesses(QObject* context, const QString& wineserver,
                       std::function<void(bool isClean)> then) const;

    /// Removes the backup that an installation has made, in the background. Its place in the bottle is free
    /// at once, for the next installation.
    void removeBackup() const;

private:
    QString m_name;
    const BottleAccess* m_bottles;
    Templates* m_templates;
    Reclaimer* m_reclaimer;
};
