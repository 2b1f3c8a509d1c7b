#include "shell/Mainwindow.h"

#include <QApplication>
#include <QClipboard>
#include <QCoreApplication>
#include <QDebug>
#include <QDesktopServices>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QShortcut>
#include <QTimer>
#include <QUrl>
#include <QtConcurrentRun>

#include "core/base/BuildInfo.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/style/Theme.h"
#include "fenk/window/TitleBar.h"
#include "launch/LaunchWindows.h"
#include "launch/records/EventRecord.h"
#include "launch/records/EventWriter.h"
#include "probes/HardwareInfo.h"
#include "shell/AddDispatcher.h"
#include "shell/DropFrame.h"
#include "shell/IndexView.h"
#include "shell/SearchWidget.h"
#include "shell/SidebarView.h"
#include "shell/requests/AddInputs.h"

namespace {
constexpr QSize FixedSize(950, 700);
constexpr int SetUpDelayMs = 10;
}  // namespace

Mainwindow::Mainwindow()
    : m_searchWidget(new SearchWidget),
      m_indexView(new IndexView(m_searchWidget)),
      m_dropFrame(new DropFrame(this)),
      m_add(new AddDispatcher(this)) {
    setObjectName("mainwindow");
    setAccessibleName("mainwindow");
    setWindowTitle(QCoreApplication::translate("Main", "Cellarix"));
    setFixedSize(FixedSize);
    setAcceptDrops(true);
    titlebar()->setDisableFlags(Qt::WindowMaximizeButtonHint);
    titlebar()->setSeparatorVisible(true);
    titlebar()->setIcon(Fenk::Theme::icon("cellarix"));
    titlebar()->setCustomWidget(m_searchWidget);
    setCentralWidget(m_indexView);
    connect(m_indexView, &IndexView::openRequested, this, &Mainwindow::openRequested);
    connect(m_add, &AddDispatcher::openRequested, this, &Mainwindow::openRequested);
    connect(m_add, &AddDispatcher::pageRequested, m_indexView, qOverload<const AddRequest&>(&IndexView::add));
    connect(m_add, &AddDispatcher::portableAdded, m_indexView, &IndexView::forgetAdded);
    connect(m_indexView, &IndexView::chosen, m_add, &AddDispatcher::carryOut);
    m_searchWidget->setPasteHandler([this] { return paste(); });
    connect(Fenk::Theme::instance(), &Fenk::Theme::themeTypeChanged, this, &Mainwindow::themeChanged);
    themeChanged();
    auto* add = new QShortcut(QKeySequence::Open, this);
    connect(add, &QShortcut::activated, m_indexView, &IndexView::addProgram);
    m_searchWidget->setFocus();
    QtConcurrent::run([now = QDateTime::currentDateTime()] {
        EventWriter::instance().writeEvent(EventRecord::common(now, machineInfo(), EventRecord::StartTid));
    });
}

void Mainwindow::themeChanged() {
    m_indexView->sidebar()->refreshIcons();
}

void Mainwindow::showEvent(QShowEvent* event) {
    Fenk::MainWindow::showEvent(event);
    if (event->spontaneous() || m_wasShown)
        return;
    m_wasShown = true;
    // After the window is shown.
    QTimer::singleShot(SetUpDelayMs, this, &Mainwindow::setUp);
}

void Mainwindow::setUp() {
    setUpTitlebarMenu();
    m_indexView->buildPages();
}

void Mainwindow::setUpTitlebarMenu() {
    qInfo() << "handle titlebar menu";
    QMenu* menu = titlebar()->menu();
    const QString doubled = QCoreApplication::translate("TitleBarMenu", "Feedback");
    const QList<QAction*> standard = menu->actions();
    for (QAction* action : standard) {
        if (action->text() == doubled)
            action->setVisible(false);
    }
    titlebar()->setIcon(Fenk::Theme::icon("cellarix"));
    titlebar()->setDisableFlags(titlebar()->disableFlags() | Qt::CustomizeWindowHint);
    auto* forums = new QAction(tr("Forums"), menu);
    connect(forums, &QAction::triggered, this,
            [] { QDesktopServices::openUrl(QUrl(BuildInfo::forumUrl())); });
    auto* feedback = new QAction(tr("Feedback"), menu);
    connect(feedback, &QAction::triggered, this, [this] {
        if (const auto& ask = LaunchWindows::instance().feedback)
            ask({}, "Cellarix", BuildInfo::version(), this);
    });
    connect(menu, &QMenu::aboutToShow, feedback,
            [feedback] { feedback->setVisible(bool(LaunchWindows::instance().feedback)); });
    QAction* first = standard.value(0);
    menu->insertActions(first, {forums, feedback});
    menu->insertSeparator(first);
}

void Mainwindow::resizeEvent(QResizeEvent* event) {
    Fenk::MainWindow::resizeEvent(event);
    m_dropFrame->setGeometry(rect());
}

void Mainwindow::keyPressEvent(QKeyEvent* event) {
    const QString text = event->text();
    const bool plain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (plain && !m_indexView->isAdding() && !text.isEmpty() && text.at(0).isPrint() && !text.at(0).isSpace())
        m_searchWidget->begin(text);
    else if (event->matches(QKeySequence::Paste))
        pasteOrTell();
    else if (event->matches(QKeySequence::Find) || event->key() == Qt::Key_Up)
        m_searchWidget->setFocus(Qt::ShortcutFocusReason);
    else if (event->key() == Qt::Key_Escape)
        m_searchWidget->clear();
    else
        Fenk::MainWindow::keyPressEvent(event);
}

void Mainwindow::pasteOrTell() {
    if (!paste())
        Fenk::FloatingMessage::show(this, Fenk::Theme::icon("fenk-info"),
                                    tr("The clipboard has no file and no address of a program."));
}

bool Mainwindow::paste() {
    const QMimeData* clipboard = QApplication::clipboard()->mimeData();
    const QStringList inputs = clipboard ? AddInputs::of(clipboard) : QStringList();
    if (!inputs.isEmpty())
        take(inputs);
    return !inputs.isEmpty();
}

void Mainwindow::take(const QStringList& inputs) {
    if (m_indexView->isAdding())
        m_indexView->add(inputs);
    else
        m_add->take(inputs);
}

/// What it is, is looked at when it is dropped: a path may lie on a server that does not answer.
void Mainwindow::dragEnterEvent(QDragEnterEvent* event) {
    if (AddInputs::of(event->mimeData()).isEmpty())
        return;
    event->acceptProposedAction();
    m_dropFrame->raise();
    m_dropFrame->show();
}

void Mainwindow::dragLeaveEvent(QDragLeaveEvent* event) {
    Fenk::MainWindow::dragLeaveEvent(event);
    m_dropFrame->hide();
}

void Mainwindow::dropEvent(QDropEvent* event) {
    m_dropFrame->hide();
    const QStringList inputs = AddInputs::of(event->mimeData());
    if (inputs.isEmpty())
        return;
    event->acceptProposedAction();
    take(inputs);
}
