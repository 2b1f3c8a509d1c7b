#include "widgets/LogsWidget.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QRegularExpression>
#include <QSaveFile>
#include <QScrollBar>
#include <QStandardPaths>
#include <QtMath>

#include "fenk/controls/FloatingMessage.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "widgets/FileChoice.h"
#include "widgets/LogsWidget_LeftIconWidget.h"

using namespace Fenk;

namespace {

constexpr int ErrorLevel = 1;
constexpr int FillDelayMs = 50;
constexpr int FillAtOnce = 4000;      ///< lines; takes some tens of milliseconds
constexpr int OtherScriptMore = 3;    ///< pixels, by which lines with Chinese characters are higher
constexpr int RemarkWithin = 40;      ///< bytes; time, process and thread stand before the word
constexpr int MostLinesShown = 1000;  // no window is larger
constexpr int MostPixelsShown = 10000;

/// What Wine says in passing; the log has it beside the errors, and it is none.
bool isRemark(const QByteArray& line) {
    const QByteArray begin = line.left(RemarkWithin);
    return begin.contains(":fixme:") || begin.contains(":warn:") || begin.contains(":trace:");
}

/// Whatever a text document would take for the end of a line or for its own marks.
const QRegularExpression& lineEnds() {
    static const QRegularExpression pattern("\r\n|[\n\r\u2028\u2029\ufdd0\ufdd1]");
    return pattern;
}

}  // namespace

LogsWidget::LogsWidget(QWidget* parent)
    : QPlainTextEdit(parent), m_left(new LogsWidget_LeftIconWidget(this)) {
    setAccessibleName("running_logs");
    setReadOnly(true);
    setCursorWidth(0);
    setTabChangesFocus(true);
    setUndoRedoEnabled(false);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setFont(Theme::instance()->font(Theme::Fixed));
    m_fillTimer.setSingleShot(true);
    connect(&m_fillTimer, &QTimer::timeout, this, &LogsWidget::fill);
    connect(this, &QPlainTextEdit::updateRequest, this, &LogsWidget::updateLineNumberArea);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
            [this](int value) { m_follows = value >= verticalScrollBar()->maximum(); });
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &LogsWidget::followEnd);
    connect(Theme::instance(), &Theme::changed, this, &LogsWidget::applyTheme);
    applyTheme();
    updateIconAreaWidth();
}

void LogsWidget::appendLine(const QString& text, int level) {
    const int now = QTime::currentTime().msecsSinceStartOfDay();
    const QStringList lines = text.split(lineEnds());
    for (const QString& line : lines) {
        QByteArray bytes = line.toUtf8();
        bytes.squeeze();  // it has room for three bytes a character
        m_lines.append({bytes, now, level});
        if (bytes.size() > m_lines[m_longest].text.size())
            m_longest = m_lines.size() - 1;
    }
    if (isVisible() && !m_fillTimer.isActive())
        m_fillTimer.start(FillDelayMs);
}

bool LogsWidget::isError(int line) const {
    return m_lines[line].level == ErrorLevel && !isRemark(m_lines[line].text);
}

QString LogsWidget::timeOf(int line) const {
    return QTime::fromMSecsSinceStartOfDay(m_lines[line].time).toString("HH:mm:ss");
}

QStringList LogsWidget::lastLines(int count) const {
    QStringList result;
    for (int i = qMax(0, m_lines.size() - count); i < m_lines.size(); ++i)
        result.append(QString::fromUtf8(m_lines[i].text));
    return result;
}

QSize LogsWidget::unbrokenSize() const {
    const int longest =
        m_lines.isEmpty() ? 0 : fontMetrics().horizontalAdvance(QString::fromUtf8(m_lines[m_longest].text));
    const int around = m_left->sizeHint().width() + verticalScrollBar()->sizeHint().width() +
                       2 * (frameWidth() + qCeil(document()->documentMargin())) + Tokens::Space8;
    const int height = qMin(m_lines.size(), MostLinesShown) * (fontMetrics().lineSpacing() + OtherScriptMore);
    return {qMin(longest, MostPixelsShown) + around,
            height + 2 * (frameWidth() + qCeil(document()->documentMargin()))};
}

QByteArray LogsWidget::allLines() const {
    QByteArray result;
    for (int i = 0; i < m_lines.size(); ++i)
        result += timeOf(i).toUtf8() + ' ' + m_lines[i].text + '\n';
    return result;
}

void LogsWidget::applyTheme() {
    const Theme* theme = Theme::instance();
    QPalette colors = theme->palette();
    colors.setColor(QPalette::Base, theme->color(Theme::Sunken));
    setPalette(colors);
    // The colour of the error lines is part of the text.
    const int place = verticalScrollBar()->value();
    const bool follows = m_follows;
    clear();
    m_filled = 0;
    fill();
    m_follows = follows;
    if (!follows)
        verticalScrollBar()->setValue(place);
}

void LogsWidget::fill() {
    if (!isVisible() || m_filled == m_lines.size())
        return;
    QTextCharFormat ordinary;
    QTextCharFormat error;
    error.setForeground(Theme::instance()->color(Theme::Danger));
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.beginEditBlock();
    const int until = qMin(m_lines.size(), m_filled + FillAtOnce);
    while (m_filled < until) {
        const bool errors = isError(m_filled);
        QString run;
        for (; m_filled < until && isError(m_filled) == errors; ++m_filled) {
            if (m_filled > 0)
                run += '\n';
            run += QString::fromUtf8(m_lines[m_filled].text);
        }
        end.insertText(run, errors ? error : ordinary);
    }
    end.endEditBlock();
    followEnd();
    if (m_filled < m_lines.size())
        m_fillTimer.start(0);
}

void LogsWidget::followEnd() {
    if (m_follows)
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void LogsWidget::copyText() {
    if (textCursor().hasSelection())
        copy();
    else
        QGuiApplication::clipboard()->setText(QString::fromUtf8(allLines()));
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
    setViewportMargins(m_left->sizeHint().width(), 0, 0, 0);
}

void LogsWidget::updateLineNumberArea(const QRect& area, int scrolledBy) {
    if (scrolledBy != 0)
        m_left->scroll(0, scrolledBy);
    else
        m_left->update(0, area.y(), m_left->width(), area.height());
}

void LogsWidget::showEvent(QShowEvent* event) {
    QPlainTextEdit::showEvent(event);
    fill();
}

void LogsWidget::resizeEvent(QResizeEvent* event) {
    QPlainTextEdit::resizeEvent(event);
    const QRect inside = contentsRect();
    m_left->setGeometry(inside.left(), inside.top(), m_left->sizeHint().width(), inside.height());
}

void LogsWidget::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy))
        copyText();
    else if (event->matches(QKeySequence::Save))
        askWhereToSave();
    else
        QPlainTextEdit::keyPressEvent(event);
}

void LogsWidget::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Copy"), this, &LogsWidget::copyText)->setShortcut(QKeySequence::Copy);
    menu->addAction(tr("Select all"), this, &QPlainTextEdit::selectAll)->setShortcut(QKeySequence::SelectAll);
    menu->addSeparator();
    menu->addAction(tr("Save..."), this, &LogsWidget::askWhereToSave)->setShortcut(QKeySequence::Save);
    menu->popup(event->globalPos());
}
