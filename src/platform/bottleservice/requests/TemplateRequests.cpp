#include "bottleservice/requests/TemplateRequests.h"

#include <QPointer>
#include <utility>

#include "bottleservice/bottles/BottleName.h"
#include "bottleservice/requests/BottleEngine.h"

using Fault = Answer::Fault;

TemplateRequests::TemplateRequests(BottleEngine* engine, QObject* parent)
    : QObject(parent), m_engine(engine) {
    connect(engine->templates(), &Templates::progress, this, &TemplateRequests::preparing);
}

void TemplateRequests::recreate(const Reply& reply) {
    m_waiting.append(reply);
    if (m_waiting.size() > 1)
        return;
    m_faults = {};
    m_runners = m_engine->bottles().runners().names();
    if (m_runners.isEmpty())
        m_faults += Reason::NoWine;
    next();
}

void TemplateRequests::next() {
    std::optional<Runner> runner;
    while (!runner && !m_runners.isEmpty() && !m_engine->isClosing())
        runner = m_engine->bottles().runners().find(m_runners.takeFirst());
    if (!runner) {
        renewBottles();
        return;
    }
    Q_EMIT progress(QString("Making the template of %1.").arg(BottleName::shown(runner->name)));
    m_elapsed.start();
    m_engine->templates()->recreate(*runner, this,
                                    [this](const QString&, const Reason& reason) { onMade(reason); });
}

void TemplateRequests::onMade(const Reason& reason) {
    if (reason.isEmpty()) {
        Q_EMIT progress(QString("Made it in %1 s.").arg((m_elapsed.elapsed() + 500) / 1000));
    } else {
        Q_EMIT progress(QString("It was not made: %1").arg(reason.text()));
        m_faults += reason;
    }
    next();
}

void TemplateRequests::renewBottles() {
    const QStringList bottles = m_engine->bottles().outdated();
    m_bottles = bottles.size();
    for (const QString& bottle : bottles) {
        Q_EMIT progress(QString("Bringing the bottle \"%1\" up to date.").arg(BottleName::shown(bottle)));
        m_engine->renew(bottle);
        // In the same queue, so it answers when the bottle is up to date.
        m_engine->enqueue(
            bottle,
            [self = QPointer<TemplateRequests>(this)](const Answer& answer) {
                if (self)
                    self->onRenewed(answer);
            },
            [] { return Answer::of(); });
    }
    leaveIfDone();
}

void TemplateRequests::onRenewed(const Answer& answer) {
    if (!answer.isGood())
        m_faults += answer.reason;
    --m_bottles;
    leaveIfDone();
}

void TemplateRequests::leaveIfDone() {
    if (m_bottles > 0 || m_waiting.isEmpty())
        return;
    m_engine->templates()->removeAllBut(m_engine->bottles().neededTemplates());
    const Answer answer = m_faults.isEmpty() ? Answer::of() : Answer::failure(Fault::Failed, m_faults);
    if (answer.isGood())
        Q_EMIT progress("Everything is up to date.");
    const QVector<Reply> waiting = std::exchange(m_waiting, {});
    for (const Reply& reply : waiting)
        reply(answer);
}
