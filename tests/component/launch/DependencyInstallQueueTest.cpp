#include <QSignalSpy>
#include <QtTest>

#include "backend/BottlesConfig.h"
#include "backend/ComponentManager.h"
#include "launch/repair/DependencyInstallQueue.h"
#include "launch/repair/DependencySetupProgressEmitter.h"
#include "support/FakeBottleService.h"
#include "support/PrivateBus.h"

using TestSupport::FakeBottleService;

namespace {
const char Path[] = "/com/lumora/Manager/Components";
const char Interface[] = "com.lumora.Manager.Components";
const QJsonObject Catalogue{
    {"runner", QJsonObject{{"installed", QJsonArray{"a", "b"}}, {"supported", QJsonArray{"b", "c"}}}},
    {"dxvk", QJsonObject{{"installed", QJsonArray{"d"}}, {"supported", QJsonArray{"e"}}}}};
QString text(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}
}  // namespace

/// The install queue and the component manager, with a fake service in a process of its own.
class DependencyInstallQueueTest : public QObject {
    Q_OBJECT

    TestSupport::PrivateBus bus;
    std::unique_ptr<FakeBottleService> fake;

private Q_SLOTS:
    void init() {
        fake = std::make_unique<FakeBottleService>();
        QVERIFY(fake->start());
    }
    void cleanup() { fake.reset(); }

    void catalogue() {
        fake->setJson("Components.list", Catalogue);
        auto* manager = ComponentManager::instance();
        int answers = 0;
        manager->whenKnown(this, [&answers] { ++answers; });
        QCOMPARE(answers, 0);  // nobody waits for the service
        QTRY_COMPARE(answers, 1);
        manager->whenKnown(this, [&answers] { ++answers; });
        QCOMPARE(answers, 2);
        QCOMPARE(manager->knownRunners(), QStringList({"a", "b", "c"}));
        QCOMPARE(manager->dxvkSupported, QStringList{"e"});
        QVERIFY(manager->vkd3dInstalled.isEmpty());

        QVERIFY(fake->emitSignal(Path, Interface, "refresh", "s",
                                 {text({{"runner", Catalogue["runner"].toObject()}})}));
        QTRY_VERIFY(manager->dxvkInstalled.isEmpty());
        QCOMPARE(manager->runnerInstalled, QStringList({"a", "b"}));

        fake->setAnswers("Components.install", {{{"text", "{\"ok\":false}"}}, {{"text", "{\"ok\":true}"}}});
        manager->install("runner", "c");
        QCOMPARE(fake->waitForCall("install").arguments, QJsonArray({"runner", "c"}));
        QVERIFY(manager->dxvkInstalled.isEmpty());
        manager->install("runner", "c");
        QTRY_COMPARE(manager->dxvkInstalled, QStringList{"d"});

        QSignalSpy installed(manager, &ComponentManager::installed);
        QVERIFY(fake->emitSignal(Path, Interface, "installed", "isss", {1, "runner", "c", ""}));
        QTRY_COMPARE(installed.size(), 1);
    }

    void queue() {
        DependencyInstallQueue repair;
        QStringList words;
        const auto note = [&words](const QString& line, MsgType type) {
            words.append(QString::number(type) + " " + line);
        };
        connect(&repair, &DependencyInstallQueue::emitMsg, this, note);
        connect(&repair, &DependencyInstallQueue::emitStep, this, note);
        QSignalSpy done(&repair, &DependencyInstallQueue::done);
        repair.install("b", {});
        QCOMPARE(done.size(), 1);
        QVERIFY(words.isEmpty());

        repair.install("b", {"x", "y", "z"});
        QCOMPARE(fake->waitForCall("installDependency").arguments, QJsonArray({"b", "x"}));
        auto* service = BottlesConfig::instance();
        Q_EMIT service->dependencyDownloadProgress("other", "x", 1, 2, "");
        Q_EMIT service->dependencyDownloadProgress("b", "x", 1, 3, "");
        Q_EMIT service->dependencyDownloadProgress("b", "x", 5, 0, "");
        Q_EMIT service->dependencyDownloadProgress("b", "x", 3, 3, "");
        Q_EMIT service->dependecyInstalled("b", "y", {{"ok", true}});
        QVERIFY(fake->emitSignal("dependencySetupDone", "sss", {"b", "x", "no json"}));
        QCOMPARE(fake->waitForCall("installDependency", 2).arguments, QJsonArray({"b", "y"}));
        Q_EMIT service->dependecyInstalled("b", "y", {{"ok", true}});
        Q_EMIT service->dependecyInstalled("b", "y", {{"ok", true}});
        Q_EMIT service->dependecyInstalled("b", "z", {{"ok", false}, {"error", "winetricks would do"}});
        QCOMPARE(done.size(), 2);
        QCOMPARE(words,
                 QStringList({"2 Fix: install components x", "1 Fixing", "2 Fixing ... 0%",
                              "2 Downloading x: 33%", "2 Downloading x: 0%", "2 Downloading x: 100%",
                              "2 Setup x, please waiting...", "2 Setup Failed", "2 Fix: install components y",
                              "1 Fixing", "2 Fixing ... 0%", "2 Setup Success", "2 Fix: install components z",
                              "1 Fixing", "2 Fixing ... 0%", "0 winetricks would do", "2 Setup Failed"}));
    }

    /// A call that is refused, one that fails, and a service that is killed each end one component.
    void noReport() {
        DependencyInstallQueue repair;
        QStringList words;
        connect(&repair, &DependencyInstallQueue::emitMsg, this,
                [&words](const QString& line) { words.append(line.section(' ', -1)); });
        QSignalSpy done(&repair, &DependencyInstallQueue::done);
        fake->setError("installDependency:b", "no");
        repair.install("b", {"x"});
        QTRY_COMPARE(done.size(), 1);
        fake->setAnswers("installDependency:b", {{{"text", "{\"ok\":false}"}}, {{"text", ""}}});
        repair.install("b", {"y", "z"});
        QVERIFY(!fake->waitForCall("installDependency", 3).method.isEmpty());
        QCOMPARE(done.size(), 1);
        fake->kill();
        QTRY_COMPARE(done.size(), 2);
        QCOMPARE(words, QStringList({"x", "no", "Failed", "y", "Failed", "z", "unexpectedly.", "Failed"}));
    }

    void progress() {
        DependencySetupProgressEmitter emitter("b", "x");
        QSignalSpy shown(&emitter, &DependencySetupProgressEmitter::valueChanged);
        emitter.onStep("b", "other", 1, 2);
        QCOMPARE(emitter.percent(), 0);
        const auto step = [&](int done, int all, int creeps) {
            emitter.onStep("b", "x", done, all);
            for (int i = 0; i < creeps; ++i)
                emitter.creep();
            return emitter.percent();
        };
        QCOMPARE(step(3, 4, 0), 75);
        QVERIFY(emitter.percentLimit() == 100 && emitter.isCreeping());
        QTRY_COMPARE(shown.isEmpty() ? QVariant() : shown.last().first(), QVariant(75));
        QCOMPARE(step(3, 4, 30), 100);
        QVERIFY(!emitter.isCreeping());
        QCOMPARE(step(1, 3, 1), 34);
        QCOMPARE(step(4, 4, 0), 100);
        QVERIFY(!emitter.isCreeping());
        QCOMPARE(step(1, 0, 0), 100);
    }
};

QTEST_GUILESS_MAIN(DependencyInstallQueueTest)
#include "DependencyInstallQueueTest.moc"
