#include "widgets/LogsWidget.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QLocale>
#include <QMenu>
#include <QSaveFile>
#include <QScrollBar>
#include <QStandardPaths>

#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "widgets/FileChoice.h"
#include "widgets/LogsWidget_LeftIconWidget.h"

using namespace Fenk;

namespace {

constexpr int OtherScriptMore = 3;    ///< pixels, by which lines with Chinese characters are higher
constexpr int MaxLinesOfSize = 1000;  // no window is larger
constexpr int MaxWidthOfSize = 10000;

}  // namespace

LogsWidget::LogsWidget(QWidget* parent, int maxLines)
    : LogView(parent, maxLines),
      m_left(new LogsWidget_LeftIconWidget(this)),
      m_dropped(new Label(Label::Small, this)) {
    setAccessibleName("running_logs");
    setFont(Theme::instance()->font(Theme::Fixed));
    m_dropped->setObjectName("dropped_lines");
    m_dropped->hide();
    connect(this, &LogView::shownLinesChanged, this, [this] { updateLineNumberArea(viewport()->rect(), 0); });
    connect(this, &LogView::shownLinesChanged, this, &LogsWidget::showDropped);
    connect(Theme::instance(), &Theme::changed, this, &LogsWidget::applyTheme);
    applyTheme();
    updateIconAreaWidth();
}

void LogsWidget::showDropped() {
    const bool hasDropped = store().droppedLines() > 0;
    if (hasDropped)
        m_dropped->setText(droppedText());
    if (m_dropped->isHidden() == hasDropped) {
        m_dropped->setVisible(hasDropped);
        updateIconAreaWidth();
    }
}

QString LogsWidget::droppedText() const {
    return tr("The oldest lines were dropped: %1").arg(QLocale().toString(store().droppedLines()));
}

QSize LogsWidget::unbrokenSize() const {
    const int longest = fontMetrics().horizontalAdvance(store().longestLine());
    const int frame = 2 * (frameWidth() + Margin);
    const int around =
        m_left->sizeHint().width() + verticalScrollBar()->sizeHint().width() + frame + Tokens::Space8;
    const int lines = qMin(store().lineCount(), MaxLinesOfSize);
    return {qMin(longest, MaxWidthOfSize) + around,
            lines * (fontMetrics().lineSpacing() + OtherScriptMore) + frame};
}

QByteArray LogsWidget::allLines() const {
    const QByteArray dropped = store().droppedLines() > 0 ? droppedText().toUtf8() + '\n' : QByteArray();
    return dropped + store().allLines();
}

void LogsWidget::applyTheme() {
    const Theme* theme = Theme::instance();
    QPalette colors = theme->palette();
    colors.setColor(QPalette::Base, theme->color(Theme::Sunken));
    setPalette(colors);
}

void LogsWidget::copyText() {
    QGuiApplication::clipboard()->setText(cursor().hasSelection() ? cursor().selectedText()
                                                                  : QString::fromUtf8(allLines()));
}

bool LogsWidget::saveTo(const QString& path) {
    QSaveFile file(path);
    const bool saved = file.open(QIODevice::WriteOnly) && file.write(allLines()) >= 0 && file.commit();
    if (!saved)
        qWarning().noquote() << "cannot save the log to" << path << file.errorString();
    FloatingMessage::show(this, Theme::icon(saved ? "fenk-success" : "fenk-error"),
                          saved ? tr("The log was saved to %1").arg(path)
                                : tr("The log could not be saved to %1: %2").arg(path, file.errorString()));
    return saved;
}

void LogsWidget::askWhereToSave() {
    QFileDialog* dialog =
        FileChoice::make(FileChoice::Kind::Log, window(), tr("Save the log"),
                         QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), QString());
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->selectFile(QDateTime::currentDateTime().toString("'cellarix-'yyyyMMdd-HHmmss'.log'"));
    connect(dialog, &QFileDialog::fileSelected, this, &LogsWidget::saveTo);
    dialog->open();
}

void LogsWidget::updateIconAreaWidth() {
    const int above = m_dropped->isHidden() ? 0 : m_dropped->sizeHint().height();
    setViewportMargins(m_left->sizeHint().width(), above, 0, 0);
}

/// However far the text was scrolled, all of the margin is painted anew.
void LogsWidget::updateLineNumberArea(const QRect& area, int) {
    m_left->update(0, area.y(), m_left->width(), area.height());
}

void LogsWidget::resizeEvent(QResizeEvent* event) {
    LogView::resizeEvent(event);
    const QRect inside = contentsRect();
    const QRect text = viewport()->geometry();
    m_left->setGeometry(inside.left(), text.top(), m_left->sizeHint().width(), text.height());
    m_dropped->setGeometry(inside.left(), inside.top(), inside.width(), m_dropped->sizeHint().height());
}

void LogsWidget::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy))
        copyText();
    else if (event->matches(QKeySequence::Save))
        askWhereToSave();
    else
        LogView::keyPressEvent(event);
}

void LogsWidget::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Copy"), this, &LogsWidget::copyText)->setShortcut(QKeySequence::Copy);
    menu->addAction(tr("Select all"), this, &LogView::selectAll)->setShortcut(QKeySequence::SelectAll);
    menu->addSeparator();
    menu->addAction(tr("Save..."), this, &LogsWidget::askWhereToSave)->setShortcut(QKeySequence::Save);
    menu->popup(event->globalPos());
}
