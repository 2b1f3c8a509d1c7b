#include "bottleservice/requests/BottleEngine.h"

#include <malloc.h>

#include <QDebug>
#include <QDir>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/jobs/ImmediateJob.h"
#include "bottleservice/jobs/RenewBottleJob.h"

namespace {

constexpr int TrimMs = 3000;

}  // namespace

BottleEngine::BottleEngine(const QString& dataDir, QObject* parent)
    : QObject(parent),
      m_dataDir(dataDir),
      m_bottles(dataDir),
      m_templates(dataDir, &m_reclaimer),
      m_queue([store = m_bottles.store()](const QString& bottle, BottleLock* lock) {
          return BottleName::check(bottle).isEmpty()
                     ? lock->acquire(store.pathOf(bottle), store.runningDir(), bottle)
                     : BottleLock::Refusal();
      }) {
    if (!QDir().mkpath(m_bottles.store().root()))
        qWarning() << "cannot make" << m_bottles.store().root();
    connect(&m_queue, &JobQueue::idle, this, &BottleEngine::reportClosed);
    // Gives memory back to the system: after minutes of work the service is idle for hours.
    m_trim.setSingleShot(true);
    m_trim.setInterval(TrimMs);
    connect(&m_trim, &QTimer::timeout, this, [] { malloc_trim(0); });
    connect(&m_queue, &JobQueue::idle, &m_trim, qOverload<>(&QTimer::start));
    connect(&m_stops, &JobQueue::idle, this, &BottleEngine::reportClosed);
    connect(&m_templates, &Templates::idle, this, &BottleEngine::reportClosed);
}

BottleEngine::~BottleEngine() = default;

JobBottle BottleEngine::jobBottle(const QString& bottle) {
    return {bottle, &m_bottles, &m_templates, &m_reclaimer};
}

void BottleEngine::enqueue(const QString& bottle, std::unique_ptr<Job> job) {
    m_queue.add(bottle, std::move(job));
}

void BottleEngine::enqueue(const QString& bottle, const Reply& reply, std::function<Answer()> work) {
    enqueue(bottle, std::make_unique<ImmediateJob>(std::move(work), reply));
}

void BottleEngine::enqueueStop(const QString& bottle, std::unique_ptr<Job> job) {
    m_stops.add(bottle, std::move(job));
}

void BottleEngine::renew(const QString& bottle) {
    enqueue(bottle, std::make_unique<RenewBottleJob>(jobBottle(bottle)));
}

void BottleEngine::waitBeforeInstall(const QString& bottle, QObject* context,
                                     const std::function<void(const QStringList&)>& then) {
    if (m_queue.hasJobs(bottle))
        then({});
    else
        m_bottles.waitForPrograms(bottle, context, then);
}

bool BottleEngine::isIdle() const {
    return m_queue.isIdle() && m_stops.isIdle() && m_templates.isIdle() && m_reclaimer.isIdle();
}

bool BottleEngine::isQuiet() const {
    return m_queue.isIdle() && m_stops.isIdle() && !m_templates.isAwaited();
}

void BottleEngine::close() {
    m_closing = true;
    m_templates.cancel();
    m_queue.close();
    m_stops.close();
    reportClosed();
}

void BottleEngine::reportClosed() {
    if (m_closing && m_queue.isIdle() && m_stops.isIdle() && m_templates.isIdle())
        Q_EMIT closed();
}
