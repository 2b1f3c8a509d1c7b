#include "core/WindowMonitor.h"

#include <QDialog>
#include <QLabel>
#include <QtTest>

class WindowMonitorTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void countsWindowsThatWereShown() {
        WindowMonitor monitor(nullptr);
        qApp->installEventFilter(&monitor);
        auto window = std::make_unique<QWidget>();
        auto* child = new QLabel("child", window.get());
        QDialog dialog;
        QWidget* const address = window.get();
        QVERIFY(!monitor.contains(address));
        window->show();
        dialog.show();
        QVERIFY(monitor.contains(address));
        QVERIFY(monitor.contains(&dialog));
        QVERIFY(!monitor.contains(child));
        window->hide();
        QVERIFY2(monitor.contains(address), "a hidden window stays known");
        window.reset();
        QVERIFY2(!monitor.contains(address), "a destroyed one does not");
    }
};

QTEST_MAIN(WindowMonitorTest)
#include "WindowMonitorTest.moc"
