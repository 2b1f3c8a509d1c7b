#include <QAbstractItemModelTester>
#include <QDesktopServices>
#include <QFileDialog>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>
#include <QtTest>

#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"
#include "launch/banner/RunningProgramsQuestion.h"
#include "programs/ListPlaceholder.h"
#include "shell/configuration/offline/MissingComponentsDialog.h"
#include "shell/configuration/offline/OfflineComponentsExportDialog.h"
#include "shell/configuration/offline/OfflineComponentsHeaderView.h"
#include "shell/configuration/offline/OfflineComponentsImportDialog.h"
#include "shell/configuration/offline/OfflineComponentsModel.h"
#include "support/FakeBottleService.h"
#include "support/KeyWalk.h"
#include "support/PrivateBus.h"
#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;

namespace {

const QStringList Names{"dotnet20", "needy", "vbrun6"};

}  // namespace

/// The dialogs that export and import components, over a fake service.
class OfflineDialogsTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;
    std::unique_ptr<TestSupport::FakeBottleService> m_service;
    QPointer<OfflineComponentsDialog> m_dialog;
    QStringList m_opened;

    template <class Dialog>
    void open() {
        m_dialog = new Dialog("office");
        m_dialog->setAttribute(Qt::WA_DeleteOnClose);
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog));
    }
    QTreeView* list() const { return m_dialog->findChild<QTreeView*>("offline_components"); }
    OfflineComponentsModel* model() const { return m_dialog->findChild<OfflineComponentsModel*>(); }
    OfflineComponentsHeaderView* head() const { return m_dialog->findChild<OfflineComponentsHeaderView*>(); }
    QAbstractButton* mainButton() const { return m_dialog->button(1); }
    QString note() const { return m_dialog->findChild<QLabel*>("offline_components_note")->text(); }
    /// "x" for a tick, then the status, of each row.
    QStringList rows() const {
        QStringList rows;
        for (int row = 0; row < model()->rowCount(); ++row) {
            const QModelIndex box = model()->index(row, OfflineComponentsModel::Select);
            rows += QString(box.data(Qt::CheckStateRole).toInt() == Qt::Checked ? "x" : "") +
                    box.data(257).toString();
        }
        return rows;
    }
    void click(int row) {
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                          list()->visualRect(model()->index(row, OfflineComponentsModel::Name)).center());
    }
    void tell(const QString& type, const QJsonObject& info) {
        QVERIFY(m_service->emitSignal(
            "/com/lumora/Manager/OfflineDependency", "com.lumora.Manager.OfflineDependency", "notifyProgress",
            "ss", {type, QString::fromUtf8(QJsonDocument(info).toJson(QJsonDocument::Compact))}));
    }
    void setInstalled(const QStringList& names) {
        m_service->setBottle("office", {{"Installed_Dependencies", QJsonArray::fromStringList(names)}});
    }
    void openExport() {
        setInstalled(Names);
        open<OfflineComponentsExportDialog>();
        QTRY_COMPARE(model()->rowCount(), 3);
    }
    /// The answer of the dialog in which the user chooses a directory or files.
    void choose(const QStringList& paths) {
        auto* choice = m_dialog->findChild<QFileDialog*>();
        QVERIFY(choice);
        Q_EMIT choice->filesSelected(paths);
        if (paths.size() == 1)
            Q_EMIT choice->fileSelected(paths.first());
        choice->close();
    }
    void openImport(const QJsonObject& answer) {
        m_service->setJson("checkDeps", answer);
        open<OfflineComponentsImportDialog>();
        QTRY_VERIFY(m_dialog->findChild<QPushButton*>("offline_import_choose"));
        m_dialog->findChild<QPushButton*>("offline_import_choose")->click();
        choose({"/a.tar", "/b.tar"});
        m_service->waitForCall("checkDeps");
    }

private Q_SLOTS:
    void initTestCase() { QDesktopServices::setUrlHandler("file", this, "onOpened"); }
    void onOpened(const QUrl& url) { m_opened << url.toLocalFile(); }
    void init() {
        Fenk::Theme::instance()->setAnimationsEnabled(false);
        m_service = std::make_unique<TestSupport::FakeBottleService>();
        QVERIFY(m_service->start());
        m_service->setText("isExporting", "false");
        m_service->setText("isImporting", "false");
        m_service->setText("getDependencies", "[]");
        m_service->setText("getDependencies:needy", R"(["dotnet20","elsewhere"])");
    }
    void cleanup() {
        delete m_dialog;
        m_service.reset();
    }

    void exporting() {
        const QString directory = m_home.path();
        openExport();
        const QAbstractItemModelTester tester(model());
        QCOMPARE(rows(), QStringList({"", "", ""}));
        QVERIFY(!mainButton()->isEnabled() && mainButton()->text() == "Export");
        QCOMPARE(TestSupport::outOfReach(m_dialog), QString());
        // What a ticked component needs is ticked with it, and stays so meanwhile.
        click(1);
        QTRY_COMPARE(rows(), QStringList({"xComponent is needed by needy", "x", ""}));
        QCOMPARE(head()->checkState(), Qt::PartiallyChecked);
        click(0);
        QCOMPARE(rows()[0], QString("xComponent is needed by needy"));
        click(1);
        QCOMPARE(rows(), QStringList({"x", "", ""}));
        click(0);
        QVERIFY(!mainButton()->isEnabled());
        QTest::keyClick(head(), Qt::Key_Space);
        QTRY_COMPARE(rows(), QStringList({"xComponent is needed by needy", "x", "x"}));
        QCOMPARE(head()->checkState(), Qt::Checked);
        QTest::mouseClick(head()->viewport(), Qt::LeftButton, {}, QPoint(20, 10));
        QCOMPARE(rows(), QStringList({"", "", ""}));
        list()->setCurrentIndex(model()->index(1, 0));
        QTest::keyClick(list(), Qt::Key_Space);
        QTRY_COMPARE(rows()[0], QString("xComponent is needed by needy"));

        QTRY_VERIFY(mainButton()->isEnabled());
        m_service->setError("exportDeps", "the stick is full");
        mainButton()->click();
        choose({directory});
        QTRY_COMPARE(note(), QString("the stick is full"));
        m_service->setText("exportDeps", "");
        QVERIFY(mainButton()->isEnabled());
        mainButton()->click();
        choose({directory});
        const auto call = m_service->waitForCall("exportDeps", 2);
        QCOMPARE(call.signature, QString("ass"));
        QCOMPARE(call.arguments[0].toArray(), QJsonArray({"dotnet20", "needy"}));
        QVERIFY(QRegularExpression('^' + directory +
                                   R"(/Exported_Components_\d{4}-\d\d-\d\d_\d\d-\d\d-\d\d\.tar$)")
                    .match(call.arguments[1].toString())
                    .hasMatch());
        QCOMPARE(rows(), QStringList({"xExporting", "xExporting", ""}));
        QVERIFY(!mainButton()->isEnabled());
        click(2);
        tell("export", {{"name", "needy"}, {"status", "downloading"}, {"progress", "40%"}});
        QTRY_COMPARE(rows(), QStringList({"xExporting", "xDownloading 40%", ""}));
        tell("import", {{"name", "needy"}, {"status", "ok"}});
        tell("export", {{"name", "needy"}, {"status", "failed"}, {"error", "It is gone."}});
        tell("export", {{"name", "dotnet20"}, {"status", "ok"}});
        QTRY_COMPARE(mainButton()->text(), QString("Ok"));
        QCOMPARE(rows(), QStringList({"xExported", "xFailed", ""}));
        QCOMPARE(note(), QString("It is gone."));
        mainButton()->click();
        QTRY_VERIFY(!m_dialog);
    }

    void nothingToExport() {
        open<OfflineComponentsExportDialog>();
        QTRY_VERIFY(m_dialog->findChild<ListPlaceholder*>());
        QCOMPARE(m_dialog->findChild<ListPlaceholder*>()->button()->text(), QString("Retry"));
        setInstalled({});
        m_dialog->findChild<ListPlaceholder*>()->button()->click();
        QTRY_COMPARE(m_dialog->findChild<ListPlaceholder*>()->accessibleName(),
                     QString("No installed components to export"));
        QVERIFY(mainButton()->isVisible() && !mainButton()->isEnabled());
    }

    /// Closing stops nothing: the next dialog shows how far the work is, and a lost service is an end, too.
    void reattaching_data() {
        const Table<bool, bool> row("isExport", "isLost");
        row("import to its end", false, false);
        row("import, service lost", false, true);
        row("export to its end", true, false);
        row("export, service lost", true, true);
    }
    void reattaching() {
        QFETCH(bool, isExport);
        QFETCH(bool, isLost);
        const QString type = isExport ? "export" : "import", done = isExport ? "Exported" : "Imported";
        const QStringList started{done, isExport ? "Exporting" : "Importing"};
        m_service->setText(isExport ? "isExporting" : "isImporting", "true");
        // At first it is being prepared.
        m_service->setAnswers(
            type + "ingStatus",
            {{{"text", "{}"}}, {{"text", R"({"a":{"status":"ok"},"b":{"status":"running"}})"}}});
        isExport ? open<OfflineComponentsExportDialog>() : open<OfflineComponentsImportDialog>();
        QTRY_COMPARE(rows(), started);
        QVERIFY(!mainButton()->isEnabled());
        click(0);
        QTest::keyClick(head(), Qt::Key_Space);
        QCOMPARE(rows(), started);
        m_dialog->button(2)->click();
        m_service->waitForCall(isExport ? "cancelExport" : "cancelImport");
        if (isLost)
            m_service->kill();
        else
            tell(type, {{"name", "b"}, {"status", "ok"}});
        QTRY_COMPARE(mainButton()->text(), QString(isExport ? "Ok" : "OK"));
        QCOMPARE(rows(), QStringList({done, isLost ? "Failed" : done}));
        QCOMPARE(note().isEmpty(), !isLost);
        QVERIFY(isExport || !m_dialog->findChild<QPushButton*>("offline_import_more")->isVisible());
    }

    /// Nothing is started, or ticked, behind the user's back.
    void neededInTime() {
        setInstalled(Names);
        m_service->setHeld("getDependencies:needy", R"(["dotnet20"])");
        open<OfflineComponentsExportDialog>();
        QTRY_COMPARE(model()->rowCount(), 3);
        click(1);
        m_service->waitForCall("getDependencies");
        QVERIFY(!mainButton()->isEnabled());
        m_service->release();
        QTRY_VERIFY(mainButton()->isEnabled());
        QCOMPARE(rows(), QStringList({"xComponent is needed by needy", "x", ""}));
        model()->setChoosing(false);
        model()->setNeeded("needy", {"vbrun6"});
        QCOMPARE(rows()[2], QString());
    }

    /// A dialog that was closed too early comes back with the refusal, and goes when there is none.
    void closedBeforeTheAnswer_data() {
        const Table<QJsonObject, bool> row("answer", "isBack");
        row("begun", {{"text", ""}}, false);
        row("refused", {{"error", "No."}}, true);
    }
    void closedBeforeTheAnswer() {
        QFETCH(QJsonObject, answer);
        QFETCH(bool, isBack);
        openImport({{"valid", QJsonArray{"a"}}});
        QTRY_COMPARE(rows(), QStringList("x"));
        answer.insert("hold", true);
        m_service->setAnswers("importDeps", {answer});
        QTRY_VERIFY(mainButton()->isEnabled());
        mainButton()->click();
        m_service->waitForCall("importDeps");
        m_dialog->close();
        QVERIFY(m_dialog && !m_dialog->isVisible());
        m_service->release();
        QTRY_COMPARE(m_dialog && m_dialog->isVisible(), isBack);
        QTRY_COMPARE(m_dialog.isNull(), !isBack);
        if (isBack)
            QCOMPARE(note(), QString("No."));
    }

    /// The files are kept; what went from them meanwhile fails; an import of another window is shown.
    void changedMeanwhile() {
        m_service->setAnswers("checkDeps",
                              {{{"error", "Not now."}}, {{"text", R"({"valid":["a","b"],"missing":{}})"}}});
        open<OfflineComponentsImportDialog>();
        QTRY_VERIFY(m_dialog->findChild<QPushButton*>("offline_import_choose"));
        m_dialog->findChild<QPushButton*>("offline_import_choose")->click();
        choose({"/a.tar", "/b.tar"});
        QTRY_VERIFY(m_dialog->findChild<ListPlaceholder*>());
        QTRY_COMPARE(m_dialog->findChild<ListPlaceholder*>()->accessibleName(), QString("Not now."));
        m_dialog->findChild<ListPlaceholder*>()->button()->click();
        QTRY_COMPARE(rows(), QStringList({"x", "x"}));
        QCOMPARE(m_service->waitForCall("checkDeps", 2).arguments,
                 QJsonArray{(QJsonArray{"/a.tar", "/b.tar"})});
        m_service->setAnswers(
            "importDeps",
            {{{"error", "Already."}, {"reasons", QJsonArray{QJsonObject{{"code", "import-running"}}}}},
             {{"text", ""}}});
        QTRY_VERIFY(mainButton()->isEnabled());
        m_service->setText("isImporting", "true");
        m_service->setText("importingStatus", R"({"other":{"status":"running"}})");
        mainButton()->click();
        QTRY_COMPARE(rows(), QStringList("Importing"));
        delete m_dialog;
        m_service->setText("isImporting", "false");
        m_service->setText("importingStatus", R"({"a":{"status":"ok"}})");
        openImport({{"valid", QJsonArray{"a", "b"}}});
        QTRY_VERIFY(model()->rowCount() == 2 && mainButton()->isEnabled());
        mainButton()->click();
        QTRY_COMPARE(rows(), QStringList({"xImported", "xFailed"}));
        QCOMPARE(note(), QString("b is not there any more."));
    }

    void importing_data() {
        const Table<bool, QJsonObject, QString, QJsonArray> row("unticksOne", "missing", "method",
                                                                "arguments");
        const QJsonArray files{"/a.tar", "/b.tar"};
        row("all", false, {}, "importDeps", {"office", files});
        row("all but one", true, {}, "importChosenDeps", {"office", files, QJsonArray{"a"}});
        row("others have no row", false, {{"c", QJsonArray{"d"}}}, "importChosenDeps",
            {"office", files, QJsonArray{"a", "b"}});
    }
    void importing() {
        QFETCH(bool, unticksOne);
        QFETCH(QJsonObject, missing);
        QFETCH(QString, method);
        QFETCH(QJsonArray, arguments);
        openImport({{"valid", QJsonArray{"a", "b"}}, {"missing", missing}});
        QTRY_COMPARE(rows(), QStringList({"x", "x"}));
        QCOMPARE(m_service->waitForCall("checkDeps").arguments, QJsonArray{arguments[1]});
        QCOMPARE(head()->checkState(), Qt::Checked);
        delete m_dialog->findChild<MissingComponentsDialog*>();
        m_dialog->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_dialog));
        QCOMPARE(TestSupport::outOfReach(m_dialog), QString());
        if (unticksOne)
            click(1);
        // Programs of the bottle are only closed when the user says so.
        m_service->setAnswers(
            method, {{{"error", "Programs run."},
                      {"errorName", "com.lumora.Error.Busy"},
                      {"reasons", QJsonArray{QJsonObject{
                                      {"code", "busy"}, {"arguments", QJsonArray{"A, B, C", "A, B", "C"}}}}}},
                     {{"text", ""}}});
        QTRY_VERIFY(mainButton()->isEnabled());
        m_service->setHeld("killWineServer", "");
        mainButton()->click();
        QCOMPARE(m_service->waitForCall(method).arguments, arguments);
        QTRY_VERIFY(m_dialog->findChild<RunningProgramsQuestion*>());
        QCOMPARE(note(), QString("Programs run in the bottle: A, B, C."));
        QStringList programs;
        for (const QLabel* label : m_dialog->findChild<RunningProgramsQuestion*>()->findChildren<QLabel*>())
            programs += label->text();
        QVERIFY(programs.contains("A, B") && programs.contains("C"));
        m_dialog->findChild<RunningProgramsQuestion*>()->button(1)->click();
        m_service->waitForCall("killWineServer");
        QVERIFY(!mainButton()->isEnabled());
        m_service->release();
        QCOMPARE(m_service->waitForCall(method, 2).arguments, arguments);
        QCOMPARE(m_service->calls("killWineServer").size(), 1);
        tell("import", {{"name", "a"}, {"status", "ok"}});
        tell("import", {{"name", "b"}, {"status", "ok"}});
        QTRY_COMPARE(mainButton()->text(), QString("OK"));
        QCOMPARE(rows(),
                 unticksOne ? QStringList({"xImported", ""}) : QStringList({"xImported", "xImported"}));
    }

    void missing() {
        openImport({{"valid", QJsonArray()},
                    {"missing", QJsonObject{{"a", QJsonArray{"x", "y"}}, {"b", QJsonArray{"b"}}}},
                    {"faults", QJsonArray{QJsonObject{{"error", "c.tar is damaged."}}}}});
        QTRY_VERIFY(m_dialog->findChild<MissingComponentsDialog*>());
        const QPointer<MissingComponentsDialog> warning = m_dialog->findChild<MissingComponentsDialog*>();
        QCOMPARE(warning->title(), QString("Components may can't be installed in offline"));
        QVERIFY(warning->message().endsWith("cannot be installed in offline mode: a, b"));
        QCOMPARE(model()->rowCount(), 0);
        QTRY_COMPARE(m_dialog->findChild<ListPlaceholder*>()->accessibleDescription(),
                     QString("c.tar is damaged."));
        warning->button(0)->click();
        QTRY_COMPARE(m_opened.size(), 1);
        QVERIFY(QRegularExpression(R"(^/tmp/[-_\d]{19}-check-import\.log$)").match(m_opened[0]).hasMatch());
        QCOMPARE(
            TestSupport::readFile(m_opened[0]),
            QByteArray(
                "Those components may can't be installed in offline.\nMissing component for a:\n- x\n- y\n"
                "Missing component for b:\n- b\n"));
        QFile::remove(m_opened[0]);
        QTest::keyClick(warning, Qt::Key_Return);
        QTRY_VERIFY(!warning && m_dialog);
    }
};

int main(int argc, char** argv) {
    const TestSupport::PrivateBus bus;  // before the application, which connects to it
    Fenk::Application app(argc, argv);
    OfflineDialogsTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "OfflineDialogsTest.moc"
