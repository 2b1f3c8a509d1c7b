#pragma once

#include <QStringList>
#include <functional>
#include <optional>

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/result/Answer.h"
#include "bottleservice/wine/Runners.h"
#include "bottleservice/wine/RunningPrograms.h"

/// The bottles of a data directory together with the Wine that each runs on: checks and loads them, saves
/// their settings, and knows what runs in them. Owned by BottleEngine; for the main thread. All functions but
/// waitForPrograms() answer at once.
class BottleAccess {
public:
    explicit BottleAccess(const QString& dataDir) : m_store(dataDir), m_runners(dataDir) {}

    const BottleStore& store() const { return m_store; }
    const Runners& runners() const { return m_runners; }
    QString pathOf(const QString& bottle) const { return m_store.pathOf(bottle); }

    /// Good when the bottle may be used; otherwise InvalidArgs (the name) or NoSuchBottle.
    Answer check(const QString& bottle) const;
    /// The settings of a bottle that may be used; otherwise nothing, and the reason in failure.
    std::optional<BottleYaml> load(const QString& bottle, Answer* failure) const;
    /// Writes bottle.yml and launch.json. Only from a job of that bottle. False with an error text, which has
    /// been logged.
    bool save(const QString& bottle, const BottleYaml& settings, QString* error) const;
    /// Writes launch.json again if it is missing or older than bottle.yml.
    void updateLaunchData(const QString& bottle, const BottleYaml& settings) const;

    /// The Wine of the bottle; its paths are empty when the runner is not installed.
    Runner runnerOf(const BottleYaml& settings) const;

    /// The names of the programs that run in the bottle or are being started there.
    QStringList runningPrograms(const QString& bottle) const;
    /// Waits until there are none, at most so long, and calls then with those that are left. Not called when
    /// context has been destroyed by then.
    void waitForPrograms(const QString& bottle, QObject* context,
                         const std::function<void(const QStringList& running)>& then,
                         int limitMs = RunningPrograms::GraceMs) const;

    /// The bottles that were copied from the template of another build of their Wine than is installed now.
    QStringList outdated() const;
    /// The keys of the templates that an installed Wine or a bottle needs.
    QStringList neededTemplates() const;

private:
    void writeLaunchData(const QString& bottle, const BottleYaml& settings) const;

    BottleStore m_store;
    Runners m_runners;
};
