#include "core/ProcessEnd.h"

#include <QDebug>
#include <QGuiApplication>
#include <QTimer>
#include <utility>

#include "backend/PendingWork.h"

using LeaveRule::Ended;
using LeaveRule::Verdict;

namespace {
constexpr int LongestLeavingMs = 120000;
}

ProcessEnd::ProcessEnd(std::function<LeaveRule::Facts()> facts, QObject* parent)
    : QObject(parent), m_facts(std::move(facts)), m_limit(new QTimer(this)) {
    m_limit->setSingleShot(true);
    m_limit->setInterval(LongestLeavingMs);
    connect(m_limit, &QTimer::timeout, this, &ProcessEnd::onTimeout);
    connect(PendingWork::instance(), &PendingWork::done, this, &ProcessEnd::onWorkEnded,
            Qt::QueuedConnection);
}

Verdict ProcessEnd::verdict(Ended what) const {
    LeaveRule::Facts facts = m_facts();
    facts.isOverdue = m_leaving && !m_limit->isActive();
    return LeaveRule::of(what, facts);
}

void ProcessEnd::leaveIfPossible(Ended what) {
    if (m_leaving == Ended::User)
        what = Ended::User;
    switch (verdict(what)) {
        case Verdict::Stay:
            stay();
            return;
        case Verdict::LeaveLater:
            leaveLater(what);
            return;
        case Verdict::Leave:
            break;
    }
    qInfo() << (what == Ended::Launch ? "all runners are finished, quit app"
                                      : "nothing is left to wait for, quit app");
    QCoreApplication::quit();
}

void ProcessEnd::onLastWindowClosed() {
    const Verdict result = verdict(Ended::LastWindow);
    QGuiApplication::setQuitOnLastWindowClosed(result == Verdict::Leave);
    if (result == Verdict::LeaveLater)
        leaveLater(m_leaving.value_or(Ended::LastWindow));
}

void ProcessEnd::leaveLater(Ended what) {
    if (!m_leaving) {
        qInfo() << "quit as soon as what was asked for is done";
        m_limit->start();
    }
    m_leaving = what;
}

void ProcessEnd::stay() {
    m_leaving.reset();
    m_limit->stop();
}

void ProcessEnd::onWorkEnded() {
    leaveIfPossible(m_leaving.value_or(Ended::Work));
}

void ProcessEnd::onTimeout() {
    if (m_facts().hasPendingWork)
        qWarning() << "the bottle service has not done in time what was asked for";
    onWorkEnded();
}
