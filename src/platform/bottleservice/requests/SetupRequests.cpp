#include "bottleservice/requests/SetupRequests.h"

#include <QDebug>
#include <QLocale>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/jobs/SetupBottleJob.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/CleanUpRequests.h"
#include "bottleservice/requests/ComponentRequests.h"
#include "manifest/ManifestReader.h"
#include "manifest/ManifestValues.h"

using Fault = Answer::Fault;

SetupRequests::SetupRequests(BottleEngine* engine, Downloads* downloads, ComponentRequests* components,
                             CleanUpRequests* cleanUps, const QString& catalogueDir, QObject* parent)
    : QObject(parent),
      m_engine(engine),
      m_downloads(downloads),
      m_components(components),
      m_cleanUps(cleanUps),
      m_catalogueDir(catalogueDir) {
    connect(components, &ComponentRequests::fetched, this, &SetupRequests::onFetched);
    connect(components, &ComponentRequests::progress, this,
            [this](const QString& kind, const QString& name, qint64 received, qint64 total) {
                for (const QString& bottle : m_setups.keys()) {
                    const Setup& setup = m_setups[bottle];
                    if (setup.isFetching && setup.components.first().kind == kind &&
                        setup.components.first().name == name)
                        tellBytes(bottle, name, received, total);
                }
            });
}

void SetupRequests::setup(const QString& bottle, const QString& manifest, const Reply& reply) {
    const auto running = m_setups.constFind(bottle);
    if (running != m_setups.constEnd()) {
        reply(running->text == manifest
                  ? Answer::of()
                  : Answer::failure(Fault::Busy, Reason(Reason::BeingSetUp, {BottleName::shown(bottle)})));
        return;
    }
    reply(Answer::of());
    const Reason refusal = begin(bottle, manifest);
    if (refusal.isEmpty()) {
        next(bottle);
        return;
    }
    qWarning() << "bottle" << BottleName::shown(bottle) << "is not set up:" << refusal.text();
    Q_EMIT failed(bottle, Answer::failure(Fault::InvalidArgs, refusal), false);
}

/// Reads the manifest and enters the set-up, unless there is a reason not to.
Reason SetupRequests::begin(const QString& bottle, const QString& text) {
    const Reason invalid = BottleName::check(bottle);
    if (!invalid.isEmpty())
        return invalid;
    if (m_engine->isClosing())
        return Reason(Reason::ServiceEnding);
    const auto bytes = ManifestValues::base64(text);
    if (!bytes)
        return Reason(Reason::BadManifest, {"It is not Base64."});
    const auto [manifest, error] = ManifestReader::read(*bytes);
    if (!error.isEmpty())
        return Reason(Reason::BadManifest, {error});
    // SetupBottleJob looks closer; this saves a download in vain. What waits in the queue may delete it.
    const BottleAccess& bottles = m_engine->bottles();
    Answer failure;
    const auto existing = !m_engine->hasJobs(bottle) && bottles.check(bottle).isGood()
                              ? bottles.load(bottle, &failure)
                              : std::nullopt;
    if (existing && !existing->programs().isEmpty())
        return Reason(Reason::BottleExists, {BottleName::shown(bottle), "it has programs"});
    Setup setup;
    setup.id = ++m_lastId;
    setup.text = text;
    setup.manifest = manifest;
    const Sources sources(m_catalogueDir, m_engine->dataDir());
    const QString wanted = manifest.wineCommand;
    const bool canBeHad = bottles.runners().find(wanted) || sources.components("runner").contains(wanted);
    setup.runner = canBeHad ? wanted : otherRunner();
    setup.components = missingComponents(setup);
    setup.fetches = setup.components.size();
    m_setups.insert(bottle, setup);
    return {};
}

/// The default Wine or, on a machine without it, the first one that there is.
QString SetupRequests::otherRunner() const {
    const QStringList names = m_engine->bottles().runners().names();
    return names.isEmpty() || names.contains(Runners::DefaultName) ? QString(Runners::DefaultName)
                                                                   : names.first();
}

/// In the order in which they are fetched.
QVector<SetupRequests::Component> SetupRequests::missingComponents(const Setup& setup) const {
    const Component wanted[] = {{"runner", setup.runner},
                                {"dxvk", setup.manifest.bottle.dxvk},
                                {"vkd3d", setup.manifest.bottle.vkd3d}};
    QVector<Component> missing;
    for (const Component& component : wanted) {
        const bool isDefault = component.kind == "runner" && component.name == Runners::DefaultName;
        if (!component.name.isEmpty() && !isDefault &&
            !m_components->store().isInstalled(component.kind, component.name))
            missing += component;
    }
    return missing;
}

void SetupRequests::next(const QString& bottle) {
    Setup& setup = m_setups[bottle];
    if (setup.components.isEmpty()) {
        enqueue(bottle);
        return;
    }
    const Component component = setup.components.first();
    setup.isFetching = true;
    tellStep(bottle, setup.fetches - setup.components.size(), "Fetching " + component.name);
    m_components->obtain(component.kind, component.name);
}

void SetupRequests::onFetched(const QString& kind, const QString& name, const Reason& reason) {
    for (const QString& bottle : m_setups.keys()) {
        const auto setup = m_setups.find(bottle);
        if (setup == m_setups.end() || !setup->isFetching || setup->components.first().kind != kind ||
            setup->components.first().name != name)
            continue;
        setup->isFetching = false;
        setup->components.removeFirst();
        if (!reason.isEmpty() && kind != "runner") {
            end(bottle, Answer::failure(Fault::Failed, reason));
            continue;
        }
        if (!reason.isEmpty()) {
            Q_EMIT described(bottle, reason.text(), ForLog);
            setup->runner = otherRunner();
        }
        next(bottle);
    }
}

void SetupRequests::enqueue(const QString& bottle) {
    Setup& setup = m_setups[bottle];
    const BottleAccess& bottles = m_engine->bottles();
    if (setup.runner != setup.manifest.wineCommand && !setup.manifest.wineCommand.isEmpty())
        Q_EMIT described(bottle,
                         QString("The Wine \"%1\" is not to be had on this machine; using %2 instead.")
                             .arg(BottleName::shown(setup.manifest.wineCommand), setup.runner),
                         ForLog);
    const auto runner = bottles.runners().find(setup.runner);
    if (!runner) {
        end(bottle, Answer::failure(Fault::Failed, Runners::missing(setup.runner)));
        return;
    }
    const SetupBottleJob::Tools tools{bottles.store(),
                                      m_engine->reclaimer(),
                                      m_downloads,
                                      Recipes(m_catalogueDir, m_engine->dataDir()),
                                      Sources(m_catalogueDir, m_engine->dataDir()),
                                      m_components->store(),
                                      [cleanUps = m_cleanUps, bottle](const Reply& reply) {
                                          return cleanUps->makeJudgement(bottle, reply);
                                      },
                                      [cleanUps = m_cleanUps, bottle](const Reply& reply) {
                                          return cleanUps->makeDeletionOfUnused(bottle, reply);
                                      }};
    auto job = std::make_unique<SetupBottleJob>(
        m_engine->jobBottle(bottle), setup.manifest, *ManifestValues::base64(setup.text), *runner, tools,
        [self = QPointer<SetupRequests>(this), bottle, id = setup.id](const Answer& answer) {
            // A cancelled one has ended before.
            if (self && self->m_setups.value(bottle).id == id)
                self->end(bottle, answer);
        });
    connect(job.get(), &SetupBottleJob::stepStarted, this,
            [this, bottle, fetches = setup.fetches](int step, const QString& title) {
                tellStep(bottle, fetches + step, title);
            });
    connect(job.get(), &SetupBottleJob::described, this,
            [this, bottle](const QString& text) { Q_EMIT described(bottle, text, ForLog); });
    connect(job.get(), &SetupBottleJob::progress, this,
            [this, bottle](const QString& file, qint64 received, qint64 total) {
                tellBytes(bottle, file, received, total);
            });
    setup.job = job.get();
    m_engine->enqueue(bottle, std::move(job));
}

void SetupRequests::tellStep(const QString& bottle, int step, const QString& title) {
    const Setup& setup = m_setups[bottle];
    Q_EMIT titleChanged(bottle, title);
    Q_EMIT progressChanged(bottle, step, setup.fetches + SetupSteps::of(setup.manifest).size());
}

void SetupRequests::tellBytes(const QString& bottle, const QString& file, qint64 received, qint64 total) {
    const QLocale locale = QLocale::c();
    const QString text =
        total > 0 ? QString("Downloading %1: %2 of %3")
                        .arg(file, locale.formattedDataSize(received), locale.formattedDataSize(total))
                  : QString("Downloading %1: %2").arg(file, locale.formattedDataSize(received));
    QString& last = m_setups[bottle].lastMoment;
    if (last == text)
        return;
    last = text;
    Q_EMIT described(bottle, text, OfTheMoment);
}

void SetupRequests::end(const QString& bottle, const Answer& result, bool isCancelled) {
    const auto found = m_setups.find(bottle);
    if (found == m_setups.end())
        return;
    const Setup setup = *found;
    if (result.isGood()) {
        const int steps = setup.fetches + SetupSteps::of(setup.manifest).size();
        Q_EMIT progressChanged(bottle, steps, steps);
    } else {
        qWarning() << "bottle" << BottleName::shown(bottle) << "is not set up:" << result.reason.text();
    }
    // A receiver may ask for the next set-up of the bottle.
    m_setups.remove(bottle);
    if (result.isGood())
        Q_EMIT succeeded(bottle);
    else
        Q_EMIT failed(bottle, result, isCancelled);
}

void SetupRequests::refuse(const QString& bottle, const Answer& verdict) {
    if (!m_setups.contains(bottle))
        Q_EMIT failed(bottle, verdict, false);
}

void SetupRequests::cancel(const QString& bottle, const Reply& reply) {
    reply(Answer::of());
    stop(bottle);
}

void SetupRequests::cancelForDeletion(const QString& bottle) {
    const auto setup = m_setups.constFind(bottle);
    // The set-up itself deletes the empty bottle that it replaces.
    if (setup != m_setups.constEnd() && !(setup->job && setup->job->isReplacing()))
        stop(bottle);
}

void SetupRequests::stop(const QString& bottle) {
    if (!m_setups.contains(bottle))
        return;
    const Setup setup = m_setups[bottle];
    if (setup.isFetching)
        m_components->release(setup.components.first().kind, setup.components.first().name);
    if (setup.job)
        setup.job->disconnect(this);
    end(bottle, Answer::failure(Fault::Failed, Reason::Cancelled), true);
    // Undoes its work in the bottle's queue, before anything else of this bottle.
    if (setup.job)
        setup.job->cancel();
}

void SetupRequests::close() {
    for (const QString& bottle : m_setups.keys())
        stop(bottle);
}
