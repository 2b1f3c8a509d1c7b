#include "launch/run/LaunchView.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDebug>
#include <QEvent>
#include <QJsonObject>
#include <QTimer>

#include "core/base/Logging.h"
#include "fenk/style/Theme.h"
#include "launch/LaunchWindows.h"
#include "launch/banner/RunningProgramsQuestion.h"
#include "launch/banner/WineExeLaunchBanner.h"
#include "launch/inspection/ExeFileInfo.h"
#include "launch/run/ExeFileExecutor.h"
#include "widgets/LogsWidget.h"
#include "widgets/RunningLogsDialog.h"

namespace {

enum LogLevel { ErrorLine = 1, OrdinaryLine = 3 };

constexpr int FirstPaintMs = 100;

/// Whether a window has been painted.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget* window) { window->installEventFilter(this); }
    bool isPainted() const { return m_painted; }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        m_painted = m_painted || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_painted = false;
};

}  // namespace

LaunchView::LaunchView(QObject* parent, WineExeLaunchBanner* banner)
    : QObject(parent), m_banner(banner ? banner : new WineExeLaunchBanner), m_log(new LogsWidget) {}

LaunchView::~LaunchView() {
    delete m_banner;
    delete m_log;
}

void LaunchView::setProgram(const QString& name, const QIcon& icon) {
    m_appName = name;
    m_banner->setAppName(name);
    m_banner->setIcon(icon.isNull() ? Fenk::Theme::icon("cxb_app_default_icon") : icon);
    m_banner->setStatus(QString());
    m_banner->setDescription(QString());
}

void LaunchView::raiseBanner() {
    m_banner->show();
    m_banner->raise();
    m_banner->activateWindow();
}

void LaunchView::showBanner() {
    qInfo() << "show banner";
    const PaintWatch watch(m_banner);
    raiseBanner();
    const QDeadlineTimer end(FirstPaintMs);
    QTimer wake;
    wake.start(FirstPaintMs);
    while (!watch.isPainted() && !end.hasExpired())
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
}

void LaunchView::follow(ExeFileExecutor* executor) {
    connect(executor, &ExeFileExecutor::emitStep, this, &LaunchView::onStep);
    connect(executor, &ExeFileExecutor::emitMsg, this, &LaunchView::onMessage);
    connect(executor, &ExeFileExecutor::iconReady, m_banner, &WineExeLaunchBanner::setIcon);
    connect(executor, &ExeFileExecutor::programsRunning, this,
            [this, executor](const QStringList& names) { askToClosePrograms(executor, names); });
    connect(executor, &ExeFileExecutor::Fixing, m_banner, &QWidget::show);
    connect(executor, &ExeFileExecutor::lingers, m_banner, &QWidget::show);
}

void LaunchView::onStep(const QString& text, MsgType type) {
    m_banner->setStatus(text);
    if (type != MsgStatus)
        addLine(text);
}

void LaunchView::onMessage(const QString& text, MsgType type) {
    m_banner->setDescription(text);
    if (type == MsgError)
        addErrorLine(text);
    else if (type != MsgStatus)
        addLine(text);
}

void LaunchView::askToClosePrograms(ExeFileExecutor* executor, const QStringList& names) {
    m_banner->show();
    auto* question = new RunningProgramsQuestion(m_appName, names, m_banner);
    connect(question, &RunningProgramsQuestion::answered, executor, &ExeFileExecutor::answerProgramsRunning);
    question->open();
}

void LaunchView::addLine(const QString& text) {
    m_log->appendLine(cleanHomePaths(text), OrdinaryLine);
}

void LaunchView::addErrorLine(const QString& text) {
    m_log->appendLine(cleanHomePaths(text), ErrorLine);
}

QStringList LaunchView::lastLines(int count) const {
    return m_log->lastLines(count);
}

void LaunchView::showLog(const std::function<QString()>& report) {
    auto* dialog = new RunningLogsDialog(m_log, m_banner);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &RunningLogsDialog::reportWanted, this,
            [dialog, report] { dialog->copyReport(report()); });
    dialog->exec();
}

int LaunchView::askFeedback(const ProgramRef& program, const QJsonObject& versionBlock) {
    const auto ask = LaunchWindows::instance().feedback;
    return ask ? ask(program, m_appName, readableVersion(versionBlock), m_banner) : 0;
}
