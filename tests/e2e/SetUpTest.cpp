#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QJsonObject>
#include <QPointer>
#include <QStandardPaths>
#include <QtTest>
#include <csignal>

#include "backend/PendingWork.h"
#include "e2e/InstalledApp.h"
#include "launch/banner/WineExeLaunchBanner.h"
#include "launch/run/ExeFileRunner.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

constexpr int LimitMs = 240000;
constexpr int AtOnce = 8;

QString dataDir() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/lumora-wine-bottles";
}

/// One set-up: what it does, what the user does, and what it left.
struct Case {
    QString manner;  ///< see setup.cpp
    QString ending;
    QString file;
    QString bottle;
    QPointer<ExeFileRunner> runner;
    QPointer<WineExeLaunchBanner> banner;
    bool hasActed = false;
    bool isOver = false;

    QString name() const { return manner + '-' + ending; }
    bool isStopped() const { return ending == "stop" || ending == "cancel"; }
    bool hasWritten() const { return QFile::exists(file + ".wrote"); }
    bool hasEnded() const { return QFile::exists(file + ".ended"); }
    QString directory() const { return dataDir() + "/bottles/" + bottle; }
};

QVector<WineExeLaunchBanner*> banners() {
    QVector<WineExeLaunchBanner*> found;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* banner = qobject_cast<WineExeLaunchBanner*>(window))
            found += banner;
    }
    return found;
}

void killService() {
    const uint pid =
        QDBusConnection::sessionBus().interface()->servicePid("com.lumora.LumoraWineLauncher").value();
    if (pid > 1)
        ::kill(pid_t(pid), SIGKILL);
}

}  // namespace

/// However the launch of a set-up ends: a file that it has written stays, and the library leads to it; a
/// bottle in which nothing was written is deleted. Real Wine, several launches at once.
class SetUpTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

    void start(Case* item) {
        const bool isHidden = item->ending == "stop" && item->manner != "hands";
        const bool lacks = QStringList{"offer", "cancel", "relaunch"}.contains(item->ending);
        item->file = sampleAs("setup", m_dir.path(),
                              item->name() + (isHidden ? "-hidden" : "") + (lacks ? "-lacks" : "") + ".exe");
        const QVector<WineExeLaunchBanner*> before = banners();
        item->runner = new ExeFileRunner(item->file, this);
        for (WineExeLaunchBanner* banner : banners()) {
            if (!before.contains(banner))
                item->banner = banner;
        }
        connect(item->runner, &ExeFileRunner::emit_finished, this, [item] { item->isOver = true; });
        if (item->runner->run() != 0)
            item->isOver = true;
        else
            item->bottle = item->runner->id();
    }

    /// What the user does.
    void act(Case* item, bool areAllMade) {
        if (!item->banner)
            return;
        const bool isFailed = item->banner->closeState() == WineExeLaunchBanner::Failed;
        const bool isUp = item->banner->isVisible();
        const auto once = [item] { return !std::exchange(item->hasActed, true); };
        if (item->ending == "creation") {
            Q_EMIT item->banner->stopRunning();
        } else if (item->ending == "stop" && !isFailed) {
            // Hidden set-ups keep the first banner; for the others it is shown again.
            const bool isThere = item->manner == "nothing"
                                     ? QFile::exists(item->directory() + "/logs/wine-" +
                                                     QFileInfo(item->file).fileName() + ".txt")
                                     : item->hasWritten();
            if (isUp && isThere)
                Q_EMIT item->banner->stopRunning();
        } else if (item->ending == "service" && !isFailed) {
            if (areAllMade && item->hasWritten() && once())
                killService();
        } else if (isFailed && (item->ending == "cancel" || item->ending == "relaunch") && once()) {
            Q_EMIT item->banner->repairButtonClicked();
        } else if (item->ending == "cancel" && item->hasActed && !isFailed && isUp) {
            Q_EMIT item->banner->stopRunning();
        } else if (isFailed) {
            item->banner->close();
        }
    }

    void drive(QVector<Case>* cases) {
        int next = 0;
        const auto isMade = [](const Case& item) { return item.isOver || QFile::exists(item.directory()); };
        const auto isDone = [&] {
            const bool areAllMade =
                next == cases->size() && std::all_of(cases->begin(), cases->end(), isMade);
            int running = 0;
            for (int i = 0; i < next; ++i) {
                if (!(*cases)[i].isOver)
                    act(&(*cases)[i], areAllMade);
                running += int(!(*cases)[i].isOver);
            }
            if (next < cases->size() && running < AtOnce)
                start(&(*cases)[next++]);
            return running == 0 && next == cases->size() && !PendingWork::instance()->isPending();
        };
        QVERIFY(waitUntil(isDone, LimitMs));
    }

    static QStringList faults(const Case& item) {
        QStringList found;
        const auto expect = [&](bool isRight, const QString& fault) {
            if (!isRight)
                found << item.name() + ' ' + fault;
        };
        const bool isKept = QFile::exists(item.directory() + "/drive_c/Program Files/Sample/kept.txt");
        const QJsonObject record = bottlesJson("get", {item.bottle}).object();
        QStringList programs;
        for (const QJsonValue& program : record["External_Programs"].toObject())
            programs << program.toObject()["path"].toString().section('\\', -1).section('/', -1);
        expect(isKept || !item.hasWritten(), "is lost");
        if (isKept) {
            // The set-up itself is listed when there is no other program in the bottle.
            const QString program =
                item.manner == "data" ? QFileInfo(item.file).fileName() : QString("Sample.exe");
            expect(programs == QStringList{program}, "has " + programs.join(", "));
        }
        // A bottle with an installed component is kept, too.
        const bool isRepaired = QFile::exists(item.directory() + "/drive_c/windows/system32/sqlite3.dll");
        if (!item.hasWritten() && !isRepaired)
            expect(!QFile::exists(item.directory()), "stays");
        if (!item.isStopped() && item.ending != "creation")
            expect(item.hasEnded(), "was stopped");
        return found;
    }

private Q_SLOTS:
    void initTestCase() {
        if (QStandardPaths::findExecutable("wine").isEmpty() || sample("setup").isEmpty())
            QSKIP("Wine or the Windows compiler is not on this machine");
        QApplication::setQuitOnLastWindowClosed(false);
        QVERIFY(offerSampleLibraries());
    }

    void everyEnding_data() {
        QTest::addColumn<QStringList>("endings");
        QTest::newRow("by itself and by the user")
            << QStringList{"relaunch", "cancel", "offer", "end", "stop", "creation"};
        QTest::newRow("service killed") << QStringList{"service"};
    }
    void everyEnding() {
        QFETCH(QStringList, endings);
        QVector<Case> cases;
        for (const QString& ending : endings) {
            for (const char* manner : {"hands", "links", "files", "data", "nothing"}) {
                if (ending != "creation" || cases.last().ending != ending)
                    cases.append({manner, ending, {}, {}, {}, {}});
            }
        }
        drive(&cases);
        QStringList found;
        for (const Case& item : qAsConst(cases))
            found += faults(item);
        if (!found.isEmpty())
            qInfo().noquote() << readFile(dataDir() + "/service.log");
        QCOMPARE(found.join("; "), QString());
    }
};

QTEST_MAIN(SetUpTest)
#include "SetUpTest.moc"
