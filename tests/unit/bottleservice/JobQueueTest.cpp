#include <fcntl.h>
#include <sys/file.h>

#include <QSignalSpy>
#include <QtTest>

#include "bottleservice/jobs/JobQueue.h"
#include "bottleservice/wine/LaunchRecords.h"
#include "bottleservice/wine/ProcessEnd.h"

namespace {

/// Starts when the queue says so and ends when the test says so.
class ManualJob : public Job {
public:
    ManualJob(const QString& name, QStringList* log)
        : Job([name, log](const Answer& answer) {
              *log += (answer.isGood() ? "answer " : "refused ") + name;
          }),
          m_name(name),
          m_log(log) {}

    void start() override { *m_log += "start " + m_name; }
    void cancel() override { end(false); }
    void end(bool good = true) {
        finish(good ? Answer::of() : Answer::failure(Answer::Fault::Failed, "cancelled"));
    }

private:
    QString m_name;
    QStringList* m_log;
};

}  // namespace

class JobQueueTest : public QObject {
    Q_OBJECT

    ManualJob* add(JobQueue& queue, const QString& bottle, const QString& name) {
        auto job = std::make_unique<ManualJob>(name, &m_log);
        ManualJob* pointer = job.get();
        queue.add(bottle, std::move(job));
        return pointer;
    }

    QStringList m_log;

private Q_SLOTS:
    void init() { m_log.clear(); }

    void oneLinePerBottle() {
        JobQueue queue;
        QSignalSpy idle(&queue, &JobQueue::idle);
        ManualJob* a1 = add(queue, "a", "a1");
        ManualJob* a2 = add(queue, "a", "a2");
        ManualJob* b1 = add(queue, "b", "b1");
        QCOMPARE(m_log, QStringList({"start a1", "start b1"}));
        b1->end();
        a1->end(false);
        a1->end();
        QTRY_COMPARE(m_log, QStringList({"start a1", "start b1", "answer b1", "refused a1", "start a2"}));
        QVERIFY(!queue.isIdle());
        a2->end();
        QVERIFY(idle.wait());
        QCOMPARE(idle.count(), 1);
        QVERIFY(queue.isIdle());
    }

    void closeCancelsAndDrops() {
        JobQueue queue;
        QSignalSpy idle(&queue, &JobQueue::idle);
        add(queue, "a", "a1");
        add(queue, "a", "a2");
        queue.close();
        add(queue, "b", "b1");
        QVERIFY(idle.wait());
        QCOMPARE(m_log, QStringList({"start a1", "refused a2", "refused a1", "refused b1"}));
    }

    void waitsForTheLock() {
        QTemporaryDir home;
        QVERIFY(QDir(home.path()).mkpath("drive_c") && QDir(home.path()).mkpath("running"));
        JobQueue queue([&home](const QString& bottle, BottleLock* lock) {
            return lock->acquire(home.path(), home.path() + "/running", bottle);
        });
        const int fd = open(qPrintable(home.path() + "/drive_c"), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        QCOMPARE(flock(fd, LOCK_EX), 0);
        add(queue, "a", "a1");
        QCOMPARE(m_log, QStringList());
        QCOMPARE(flock(fd, LOCK_UN), 0);
        QTRY_COMPARE(m_log, QStringList("start a1"));
        QCOMPARE(flock(fd, LOCK_EX | LOCK_NB), -1);
        QCOMPARE(flock(fd, LOCK_SH | LOCK_NB), 0);
        close(fd);

        // A claim counts without a lock; its process is none that ends with the bottle's programs.
        const QString running = home.path() + "/running";
        QFile claim(running + "/1.start");
        QVERIFY(claim.open(QIODevice::WriteOnly));
        claim.write(QString(R"({"bottle":"b","name":"p","kind":"packing","pid":%1,"start":"%2"})")
                        .arg(getpid())
                        .arg(ProcessEnd::startTime(getpid()))
                        .toUtf8());
        claim.close();
        add(queue, "b", "b1");
        QCOMPARE(m_log.last(), QString("refused b1"));
        QCOMPARE(LaunchRecord::launchers(running, "b"), QVector<pid_t>());
        QCOMPARE(LaunchRecord::starting(running, "b"), QStringList());
    }

    void destructionAnswers() {
        auto queue = std::make_unique<JobQueue>();
        add(*queue, "a", "a1");
        add(*queue, "a", "a2");
        queue.reset();
        QCOMPARE(m_log.filter("refused").size(), 2);
    }
};

QTEST_GUILESS_MAIN(JobQueueTest)
#include "JobQueueTest.moc"
