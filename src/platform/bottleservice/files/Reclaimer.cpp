#include "bottleservice/files/Reclaimer.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QtConcurrentRun>

#include "bottleservice/files/TreeRemover.h"
#include "bottleservice/files/WorkingDirectory.h"

namespace {

constexpr int GraceMs = 5000;  // the next service waits for the lock three times as long

}  // namespace

Reclaimer::Reclaimer(QObject* parent) : QObject(parent) {
    m_worker.setMaxThreadCount(1);
}

Reclaimer::~Reclaimer() {
    if (m_worker.waitForDone(GraceMs))
        return;
    m_stop = true;
    m_worker.waitForDone();
}

void Reclaimer::remove(const QString& path, const char* prefix) {
    const QString hidden = WorkingDirectory::pathBeside(path, prefix);
    const QString fault = WorkingDirectory::moveInto(path, hidden);
    if (fault.isEmpty())
        remove(hidden);
    else
        qWarning() << fault;
}

void Reclaimer::remove(const QString& path) {
    QtConcurrent::run(&m_worker, [this, path] {
        QElapsedTimer elapsed;
        elapsed.start();
        QString error;
        if (TreeRemover::remove(path, &error, &m_stop))
            qInfo() << "removed" << path << "in" << elapsed.elapsed() << "ms";
        else
            qWarning() << "cannot remove" << path << "now:" << error;
    });
}
