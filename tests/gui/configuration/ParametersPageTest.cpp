#include <QAbstractButton>
#include <QAbstractItemView>
#include <QFileDialog>
#include <QLineEdit>
#include <QWheelEvent>

#include "fenk/controls/LineEdit.h"
#include "fenk/window/Application.h"
#include "shell/configuration/parameters/EmulatorComboBox.h"
#include "shell/configuration/parameters/LogFileEdit.h"
#include "shell/configuration/parameters/WineChannerCombobox.h"
#include "shell/configuration/parameters/WineParamsCfgWidget.h"
#include "support/FakeBottleService.h"
#include "support/KeyWalk.h"
#include "support/LogCapture.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace TestSupport;

namespace {

/// An answer of the service.
QJsonObject emulators(const QString& usingName) {
    return {{"text", QString(R"({"installed":{"hangover":"a","box64":"b"},"using":"%1"})").arg(usingName)}};
}

}  // namespace

class ParametersPageTest : public QObject {
    Q_OBJECT

    TestHome m_home;
    std::unique_ptr<FakeBottleService> m_service;
    std::unique_ptr<WineParamsCfgWidget> m_page;
    std::shared_ptr<EntryParameters> m_entry;

    template <class Control>
    Control* part(const char* name) const {
        return m_page->findChild<Control*>(name);
    }
    WineChannerCombobox* channels() const { return part<WineChannerCombobox>("params_channels"); }
    EmulatorComboBox* translatorCombo() const { return part<EmulatorComboBox>("params_emulator"); }
    Fenk::LineEdit* environment() const { return part<Fenk::LineEdit>("params_environment"); }
    QLineEdit* logPath() const { return part<LogFileEdit>("params_log_file")->findChild<QLineEdit*>(); }

    QString shownTranslators() const {
        QStringList names;
        for (int i = 0; i < translatorCombo()->count(); ++i)
            names << QString(i == translatorCombo()->currentIndex() ? "[%1]" : "%1")
                         .arg(translatorCombo()->itemData(i).toString());
        return names.join(' ');
    }

    void open() {
        m_page->setBottle("office", m_home.path());
        m_page->show();
        QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
        m_service->waitForCall("getEmulators");
    }
    void chooseChannels(int entry) {
        QTest::mouseClick(channels(), Qt::LeftButton, {}, channels()->rect().center() + QPoint(145, 0));
        QTRY_VERIFY(channels()->view()->isVisible());
        for (int row = channels()->view()->currentIndex().row(); row < entry; ++row)
            QTest::keyClick(channels()->view(), Qt::Key_Down);
        QTest::keyClick(channels()->view(), Qt::Key_Return);
        QTRY_VERIFY(!channels()->view()->isVisible());
    }

private Q_SLOTS:
    void init() {
        m_service = std::make_unique<FakeBottleService>();
        QVERIFY(m_service->start());
        m_page = std::make_unique<WineParamsCfgWidget>();
        m_entry = std::make_shared<EntryParameters>(
            QJsonObject{{"id", "u1"}, {"arguments", "-a"}, {"envs", QJsonObject{{"B", "x y"}}}});
        m_page->setEntry(m_entry);
    }
    void cleanup() {
        m_page.reset();
        m_service.reset();
    }

    void entriesAreShownAndEdited() {
        open();
        QCOMPARE(environment()->alertMessage(), QString());  // what nobody has edited stays as it is
        for (QWidget* edit : {part<QWidget>("params_arguments")->focusProxy(), environment()->focusProxy()})
            QTest::keyClick(edit, Qt::Key_End);
        QTest::keyClicks(part<QWidget>("params_arguments")->focusProxy(), " -b");
        QTest::keyClicks(environment()->lineEdit(), " C=3");
        QTest::keyClicks(channels()->lineEdit(), "+d3d");
        QTest::keyClicks(logPath(), "/tmp/a.log");
        m_page->setEntry(std::make_shared<EntryParameters>());
        QCOMPARE(m_entry->arguments + '|' + m_entry->environment + '|' + m_entry->channels + '|' +
                     m_entry->logPath,
                 QString("-a -b|B=x y C=3|+d3d|/tmp/a.log"));
        m_page->setEntry(m_entry);
        for (auto* reset : m_page->findChildren<QAbstractButton*>("reset_btn"))
            reset->click();
        QCOMPARE(m_entry->arguments + m_entry->environment + m_entry->channels + m_entry->logPath, QString());
        QVERIFY(environment()->text().isEmpty() && channels()->channels().isEmpty());
        m_page->setEntry(nullptr);
        QVERIFY(!environment()->isEnabled() && !channels()->isEnabled());
    }

    void channelsAreAdded() {
        open();
        chooseChannels(1);
        QCOMPARE(m_entry->channels, QString("+event,+win,+x11drv"));
        channels()->lineEdit()->setText("err+all,+win");
        chooseChannels(6);
        QCOMPARE(channels()->channels(), QString("+event,+key,+keyboard,+win,err+all"));
        QCOMPARE(m_entry->channels, channels()->channels());
        // The wheel and keys choose in other lists; here they would add channels unseen.
        for (const Qt::Key key : {Qt::Key_Up, Qt::Key_PageDown, Qt::Key_PageUp})
            QTest::keyClick(channels(), key);
        QWheelEvent wheel(QPointF(9, 9), channels()->mapToGlobal(QPoint(9, 9)), {}, {0, -120}, Qt::NoButton,
                          {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(channels(), &wheel);
        QCOMPARE(m_entry->channels, QString("+event,+key,+keyboard,+win,err+all"));
        QTest::keyClick(channels(), Qt::Key_Down);
        QTRY_VERIFY(channels()->view()->isVisible());
    }

    void faultsOfTheEnvironmentAreTold_data() {
        const Table<QString, QString> row("text", "part");
        row("good", "A=1 B='x y'", "");
        row("word", "A=1 word", "“word”");
        row("markup", "<b>x</b>", "“<b>x</b>”");
        row("quote", "A='x", "quote");
    }
    void faultsOfTheEnvironmentAreTold() {
        QFETCH(QString, text);
        QFETCH(QString, part);
        open();
        environment()->lineEdit()->setFocus();
        environment()->lineEdit()->setText(text);
        QVERIFY2(environment()->alertMessage().isEmpty() || !part.isEmpty(), "not while the user types");
        QTest::keyClick(environment()->lineEdit(), Qt::Key_Return);
        QVERIFY2(environment()->alertMessage().contains(part), qPrintable(environment()->alertMessage()));
        QCOMPARE(environment()->alertMessage().isEmpty(), part.isEmpty());
    }

    void translators_data() {
        const Table<QJsonObject, QString> row("answer", "shown");
        row("refused", {{"error", "busy"}}, "");
        row("none is used", emulators(""), "box64 hangover");
        row("one is used", emulators("hangover"), "box64 [hangover]");
    }
    void translators() {
        QFETCH(QJsonObject, answer);
        QFETCH(QString, shown);
        const LogCapture log;
        m_service->setAnswers("Bottles.getEmulators:office", {answer});
        open();
        QTRY_COMPARE(shownTranslators(), shown);
        QTRY_COMPARE(log.contains(QtWarningMsg, "Failed to fetch emulators info."), answer.contains("error"));
        QCOMPARE(m_page->hasTranslators(), !shown.isEmpty());
        QCOMPARE(m_service->calls("setEmulator").size(), 0);
        if (shown != "box64 [hangover]")
            return;
        QCOMPARE(outOfReach(m_page.get()), QString());
        m_service->setError("Bottles.setEmulator", "no");
        QTest::mouseClick(translatorCombo(), Qt::LeftButton);
        QTRY_VERIFY(translatorCombo()->view()->isVisible());
        QTest::keyClick(translatorCombo()->view(), Qt::Key_Up);
        QTest::keyClick(translatorCombo()->view(), Qt::Key_Return);
        QCOMPARE(m_service->waitForCall("setEmulator").arguments, (QJsonArray{"office", "box64"}));
        QTRY_COMPARE(shownTranslators(), shown);  // it was refused
        m_page->setBottle("office", m_home.path());
        QCOMPARE(shownTranslators(), shown);  // until the service has answered
    }

    /// A late answer about one bottle does not show on another.
    void lateTranslators() {
        m_service->setHeld("Bottles.getEmulators:office", R"({"installed":{"late":"x"},"using":"late"})");
        m_service->setAnswers("Bottles.getEmulators:games", {emulators("box64"), emulators("hangover")});
        open();
        m_page->setBottle("games", {});
        QTRY_COMPARE(translatorCombo()->currentText(), QString("box64"));
        bool lateIsShown = false;
        connect(
            translatorCombo()->model(), &QAbstractItemModel::rowsInserted, this,
            [&, combo = translatorCombo()] { lateIsShown = lateIsShown || combo->findText("late") >= 0; });
        QCOMPARE(m_service->release(), 1);
        m_page->refreshTranslators();
        QTRY_COMPARE(translatorCombo()->currentText(), QString("hangover"));
        QVERIFY(!lateIsShown);
    }

    /// A failed save is told to whoever waits for it, and is logged in any case.
    void savingFails() {
        int ended = 0;
        const LogCapture log;
        m_service->setError("Bottles.updateExternalProgram", "the disk is full");
        saveParameters("office", *m_entry, this,
                       [&ended](const BusResult& result) { ended += result.ok ? 9 : 1; });
        auto gone = std::make_unique<QObject>();
        saveParameters("office", *m_entry, gone.get(), [&ended](const BusResult&) { ended += 9; });
        gone.reset();
        saveParameters("office", *m_entry);
        m_service->waitForCall("updateExternalProgram", 3);
        QTRY_COMPARE(ended, 1);
        QTRY_COMPARE(log.count("can't save the parameters of u1 in office: the disk is full"), 3);
    }

    void logFileIsChosen() {
        QDir(m_home.path()).mkpath("logs");
        open();
        part<QAbstractButton>("params_log_file_button")->click();
        QTRY_VERIFY(m_page->findChild<QFileDialog*>());
        auto* dialog = m_page->findChild<QFileDialog*>();
        QVERIFY(dialog->isVisible());
        QCOMPARE(dialog->windowTitle(), QString("Log files"));
        QCOMPARE(dialog->nameFilters(), QStringList("Log files (*.log)"));
        QCOMPARE(dialog->selectedFiles(), QStringList(m_home.path() + "/logs/Unnamed.log"));
        static_cast<QDialog*>(dialog)->accept();
        QCOMPARE(m_entry->logPath, m_home.path() + "/logs/Unnamed.log");
        QTRY_VERIFY(!m_page->findChild<QFileDialog*>());
        auto* edit = part<LogFileEdit>("params_log_file")->findChild<Fenk::LineEdit*>();
        for (const char* path : {"/nonexistent/x.log", "x.log"}) {
            edit->setText(path);
            QTest::keyClick(logPath(), Qt::Key_Return);
            QTRY_COMPARE(edit->alertMessage(), QString("There is no such folder"));
            QTest::keyClicks(logPath(), "x");
            QVERIFY(edit->alertMessage().isEmpty());
        }
    }
};

int main(int argc, char** argv) {
    const PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    ParametersPageTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "ParametersPageTest.moc"
