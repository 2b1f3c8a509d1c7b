#include <QAbstractButton>
#include <QAccessible>
#include <QGraphicsEffect>
#include <QHelpEvent>
#include <QLayout>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QWindow>
#include <memory>

#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Theme.h"
#include "gui/fenk/FenkTestMain.h"
#include "launch/LaunchWindows.h"
#include "launch/banner/BannerCloseConfirmDialog.h"
#include "launch/banner/SteadyText.h"
#include "launch/banner/WineExeLaunchBanner.h"
#include "support/KeyWalk.h"
#include "support/Table.h"

using Banner = WineExeLaunchBanner;
using TestSupport::press;
using TestSupport::Table;
using Signal = void (Banner::*)();
Q_DECLARE_METATYPE(Signal)

namespace {

QWidget* part(QWidget* window, const QString& name) {
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        if (widget->accessibleName() == name)
            return widget;
    }
    return nullptr;
}

}  // namespace

class LaunchBannerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        LaunchWindows& windows = LaunchWindows::instance();
        windows.configuration = [](const ProgramRef&, LaunchWindows::ConfigMode, QWidget*) {
            return nullptr;
        };
        windows.feedback = [](const ProgramRef&, const QString&, const QString&, QWidget*) { return 0; };
        m_banner = std::make_unique<Banner>();
        m_banner->show();
        m_banner->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_banner.get()));
    }
    void cleanup() {
        m_banner.reset();
        LaunchWindows::instance() = {};
    }

    void closes_data() {
        const Table<int> row("state");
        row("running", Banner::Running);
        row("failed", Banner::Failed);
        row("closable", Banner::Closable);
    }
    void closes() {
        QFETCH(int, state);
        if (state == Banner::Failed)
            m_banner->showFailed(true);
        else if (state == Banner::Closable)
            m_banner->allowClose();
        QCOMPARE(m_banner->closeState(), state);
        const QSignalSpy finished(m_banner.get(), &Banner::finished);
        press(m_banner.get(), Qt::Key_Escape);
        const bool asks = state == Banner::Running;
        QCOMPARE(finished.count(), asks ? 0 : 1);
        QCOMPARE(m_banner->isVisible(), asks);
        QCOMPARE(questions().size(), asks ? 1 : 0);
    }

    void question_data() {
        const Table<QString, int, int> row("button", "key", "stops");
        row("close", "close_btn", 0, 1);
        row("keep waiting", "keep_waiting_btn", 0, 0);
        row("Return keeps waiting", "", Qt::Key_Return, 0);
        row("Escape keeps waiting", "", Qt::Key_Escape, 0);
    }
    void question() {
        QFETCH(QString, button);
        QFETCH(int, key);
        const QSignalSpy stopped(m_banner.get(), &Banner::stopRunning);
        m_banner->close();
        m_banner->close();
        QCOMPARE(questions().size(), 1);
        auto* dialog = questions().first();
        QVERIFY(QTest::qWaitForWindowActive(dialog));
        QVERIFY(dialog->isModal());
        QCOMPARE(TestSupport::outOfReach(dialog), QString());
        QCOMPARE(dialog->accessibleName(), QString("close_confirm_dialog"));
        QVERIFY((dialog->geometry().center() - m_banner->geometry().center()).manhattanLength() <= 2);
        if (key)
            press(dialog, Qt::Key(key));
        else
            QTest::mouseClick(part(dialog, button), Qt::LeftButton);
        QTEST(stopped.count(), "stops");
        QTRY_VERIFY(questions().isEmpty());
        QCOMPARE(m_banner->focusWidget(), m_banner.get());
        QVERIFY(m_banner->isVisible());
        QCOMPARE(m_banner->closeState(), int(Banner::Running));
    }

    void questionEndsWithTheLaunch() {
        const QSignalSpy stopped(m_banner.get(), &Banner::stopRunning);
        m_banner->close();
        m_banner->showFailed(false);
        QTRY_VERIFY(questions().isEmpty());
        m_banner->showRunning();
        m_banner->close();
        m_banner->hide();
        QTRY_VERIFY(questions().isEmpty());
        QCOMPARE(stopped.count(), 0);
    }

    void failedLook_data() {
        const Table<bool, bool, bool, int, QStringList> row("isThere", "canRepair", "canFix", "height",
                                                            "names");
        const QStringList quiet = {"feedback_btn", "view_logs_btn"};
        row("fix", true, true, true, 500, QStringList{"repair_debug_btn", "repair_btn"} + quiet);
        row("no fix", true, true, false, 500, QStringList{"debug_btn"} + quiet);
        row("public", true, false, false, 432, quiet);
        row("public, fix", true, false, true, 432, quiet);
        row("fix, no other windows", false, true, true, 500, {"repair_btn", "view_logs_btn"});
        row("no fix, no other windows", false, true, false, 500, {"view_logs_btn"});
    }
    void failedLook() {
        QFETCH(bool, isThere);
        QFETCH(bool, canRepair);
        QFETCH(bool, canFix);
        QFETCH(QStringList, names);  // in the order of Tab
        QCOMPARE(m_banner->size(), QSize(660, 432));
        if (!isThere)
            LaunchWindows::instance() = {};
        m_banner->setCanRepair(canRepair);
        m_banner->showFailed(canFix);
        QTEST(m_banner->height(), "height");
        QCOMPARE(m_banner->minimumSize(), m_banner->maximumSize());
        QCOMPARE(text("status"), QString("The app fails to run"));
        QVERIFY(!m_banner->findChild<Fenk::Spinner*>()->isVisible());

        QSignalSpy debugged(m_banner.get(), &Banner::debugButtonClicked);
        QSignalSpy repaired(m_banner.get(), &Banner::repairButtonClicked);
        press(m_banner.get(), Qt::Key_Return);
        QCOMPARE(debugged.count(), names.count("debug_btn"));
        QCOMPARE(repaired.count(), names.count("repair_btn"));

        QCOMPARE(m_banner->findChild<Fenk::Label*>("advice")->text().contains("debugging"), isThere);
        part(m_banner.get(), "view_logs_btn")->setFocus();
        QStringList order;
        for (int i = 0; i < names.size() + 2; ++i) {  // with the two buttons of the title bar
            order << m_banner->focusWidget()->accessibleName();
            press(m_banner.get(), Qt::Key_Tab);
        }
        std::rotate(order.begin(), order.begin() + order.indexOf("Minimize") + 2, order.end());
        QCOMPARE(order, names + QStringList({"Minimize", "Close"}));
        QCOMPARE(TestSupport::outOfReach(m_banner.get()), QString());

        m_banner->showRunning();
        QCOMPARE(m_banner->height(), 432);
        QVERIFY(m_banner->findChild<Fenk::Spinner*>()->isVisible());
        for (const QString& name : names)
            QVERIFY(!part(m_banner.get(), name)->isVisible());
    }

    void buttons_data() {
        const Table<QString, bool, Signal> row("name", "canFix", "signal");
        row("feedback", "feedback_btn", true, &Banner::feedBackButtonClicked);
        row("logs", "view_logs_btn", true, &Banner::showLogsButtonClicked);
        row("debug alone", "debug_btn", false, &Banner::debugButtonClicked);
        row("debug", "repair_debug_btn", true, &Banner::debugButtonClicked);
        row("repair", "repair_btn", true, &Banner::repairButtonClicked);
        row("retry", "retry_btn", false, &Banner::retryButtonClicked);
        row("choose", "choose_file_btn", false, &Banner::chooseFileButtonClicked);
    }
    void buttons() {
        QFETCH(QString, name);
        QFETCH(bool, canFix);
        QFETCH(Signal, signal);
        m_banner->setDescription(QString("A reason that is much longer than one line. ").repeated(9));
        m_banner->showFailed(canFix);
        if (!canFix)
            m_banner->offerRetry(true);
        QWidget* button = part(m_banner.get(), name);
        const QRect place(button->mapTo(m_banner.get(), QPoint()), button->size());
        QVERIFY(m_banner->rect().contains(place));
        QTRY_VERIFY(button->visibleRegion().boundingRect().height() >= button->sizeHint().height());
        const QSignalSpy spy(m_banner.get(), signal);
        QTest::mouseClick(button, Qt::LeftButton);
        QTest::mousePress(button, Qt::LeftButton);
        QTest::mouseRelease(button, Qt::LeftButton, {}, QPoint(-9, -9));
        QCOMPARE(spy.count(), 1);
        button->setFocus(Qt::TabFocusReason);
        press(m_banner.get(), Qt::Key_Space);
        press(m_banner.get(), Qt::Key_Return);
        QCOMPARE(spy.count(), 3);
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(button);
        QCOMPARE(seen->role(), QAccessible::Button);
        QVERIFY(!seen->text(QAccessible::Description).isEmpty());
        seen->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(spy.count(), 4);
    }

    void motionEndsInTheRightLook() {
        Fenk::Theme::instance()->setAnimationsEnabled(true);
        const int iconTop = m_banner->findChild<Fenk::Spinner*>()->mapTo(m_banner.get(), QPoint()).y();
        m_banner->showFailed(true);
        QVERIFY(m_banner->height() < 500);
        QTRY_COMPARE(m_banner->height(), 500);
        m_banner->showRunning();
        QTRY_COMPARE(m_banner->size(), QSize(660, 432));
        QTRY_VERIFY(!m_banner->findChild<QGraphicsEffect*>()->isEnabled());
        QCOMPARE(m_banner->findChild<Fenk::Spinner*>()->mapTo(m_banner.get(), QPoint()).y(), iconTop);
        QCOMPARE(m_banner->minimumSize(), m_banner->maximumSize());
    }

    void textsArriveAtAPace() {
        m_banner->setStatus("");
        m_banner->setStatus("One");
        QCOMPARE(text("status"), QString("One"));
        m_banner->setStatus("Two");
        m_banner->setStatus("Three\nlines");
        QCOMPARE(text("status"), QString("One"));
        QTRY_COMPARE(text("status"), QString("Three lines"));
        m_banner->setDescription("Why");
        m_banner->setDescription("Because");
        m_banner->showFailed(true);
        QCOMPARE(text("description"), QString("Because"));
        m_banner->showRunning();
        QCOMPARE(text("status"), QString("Three lines"));
        m_banner->setStatus("Fixing ... 0%");
        QCOMPARE(text("status"), QString("Fixing ... 0%"));
    }

    void longNamesTakeTwoLines() {
        QVERIFY2(m_banner->hasFocus(), "no button has the focus unasked");
        auto* name = m_banner->findChild<Fenk::Label*>("app_name");
        const int line = name->fontMetrics().lineSpacing();
        const auto lines = [&](const QString& text) {
            m_banner->setAppName(text);
            m_banner->centralWidget()->layout()->activate();
            return qRound(double(name->height()) / line);
        };
        QCOMPARE(lines("Ledger"), 1);
        QCOMPARE(lines("Harbour Office Professional Setup"), 2);
        QVERIFY(name->toolTip().isEmpty());
        const QString endless = QString("Harbour Office ").repeated(9).trimmed();
        QCOMPARE(lines(endless), 2);
        QCOMPARE(lines(QString(endless).remove(' ')), 2);
        QCOMPARE(name->width(), 200);
        QHelpEvent asked(QEvent::ToolTip, {}, {});
        QCoreApplication::sendEvent(name, &asked);
        QCOMPARE(name->toolTip(), QString(endless).remove(' '));
    }

    void longReasonIsWhole() {
        m_banner->setDescription(QString("A long reason. ").repeated(8));
        m_banner->showFailed(true);
        QTRY_COMPARE(m_banner->height(), 500);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        for (const auto* label : m_banner->findChildren<Fenk::Label*>())
            QVERIFY2(!label->isVisible() || label->height() >= label->heightForWidth(label->width()),
                     qPrintable(label->text()));
        for (const auto* button : m_banner->findChildren<QPushButton*>())
            QVERIFY2(!button->isVisible() ||
                         button->visibleRegion().boundingRect().height() >= button->sizeHint().height(),
                     qPrintable(button->text() + QString::number(button->height())));
    }

    void percentagesNeverFall() {
        const QString last = "Fixing ... 12%";
        QVERIFY(SteadyText::fallsBack(last, "Fixing ... 9%"));
        for (const char* next : {"Fixing ... 12%", "Fixing ... 100%", "Downloading mono9: 1%", "Fixing"})
            QVERIFY2(!SteadyText::fallsBack(last, next), next);
    }

private:
    QString text(const char* label) const { return m_banner->findChild<Fenk::Label*>(label)->text(); }
    QList<BannerCloseConfirmDialog*> questions() const {
        return m_banner->findChildren<BannerCloseConfirmDialog*>();
    }

    std::unique_ptr<Banner> m_banner;
};

FENK_TEST_MAIN(LaunchBannerTest)
#include "LaunchBannerTest.moc"
