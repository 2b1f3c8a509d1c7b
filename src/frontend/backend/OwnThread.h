#pragma once

#include <QThreadPool>
#include <QtConcurrentRun>
#include <limits>

/// One thread for the work of its owner, in the order in which it comes, as the pool of inBackground(). When
/// the owner goes, work that has not begun is dropped; for what has begun only the end of the process waits.
class OwnThread {
public:
    OwnThread() { m_pool->setMaxThreadCount(1); }
    ~OwnThread() {
        m_pool->clear();
        if (m_pool->activeThreadCount() == 0)
            delete m_pool;
        else
            QtConcurrent::run(retired(), [pool = m_pool] { delete pool; });  // which waits for the work
    }

    QThreadPool* pool() const { return m_pool; }

private:
    Q_DISABLE_COPY(OwnThread)

    /// Not the common threads, which would all wait in the end.
    static QThreadPool* retired() {
        static QThreadPool pool;
        pool.setMaxThreadCount(std::numeric_limits<int>::max());
        return &pool;
    }

    QThreadPool* const m_pool = new QThreadPool;
};
