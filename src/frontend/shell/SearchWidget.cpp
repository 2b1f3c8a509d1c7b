#include "shell/SearchWidget.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>

#include "fenk/controls/SearchEdit.h"

namespace {
constexpr QSize LeastSize(350, 36);
constexpr int LongestKeyword = 128;
}  // namespace

SearchWidget::SearchWidget(QWidget* parent) : QWidget(parent), m_edit(new Fenk::SearchEdit) {
    setObjectName("search_widget");
    setMinimumSize(LeastSize);
    m_edit->setMaxLength(LongestKeyword);
    m_edit->setMinimumHeight(LeastSize.height());
    // The window handles drops.
    m_edit->setAcceptDrops(false);
    m_edit->installEventFilter(this);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_edit);
    setFocusProxy(m_edit);
    connect(m_edit, &QLineEdit::textChanged, this, &SearchWidget::textChanged);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* old, const QWidget* now) {
        if (now != m_edit || !old || old->window() != window())
            return;
        m_previousFocus = old;
        m_hasPreviousFocus = true;
    });
}

QString SearchWidget::text() const {
    return m_edit->text();
}

void SearchWidget::clear() {
    m_edit->clear();
}

void SearchWidget::begin(const QString& letter) {
    m_edit->setFocus(Qt::OtherFocusReason);
    m_edit->deselect();
    m_edit->end(false);
    m_edit->insert(letter);
}

void SearchWidget::clearAndReturn() {
    m_edit->clear();
    if (!m_hasPreviousFocus)
        return;
    m_hasPreviousFocus = false;
    if (m_previousFocus && m_previousFocus->isVisible() && m_previousFocus->focusPolicy() != Qt::NoFocus)
        m_previousFocus->setFocus(Qt::OtherFocusReason);
    else
        Q_EMIT leaveForResults();
}

bool SearchWidget::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        auto* press = static_cast<QKeyEvent*>(event);
        if (press->matches(QKeySequence::Paste) && m_pasteHandler && m_pasteHandler())
            return true;
        switch (press->key()) {
            case Qt::Key_Down:
            case Qt::Key_Return:
            case Qt::Key_Enter:
                Q_EMIT leaveForResults();
                return true;
            case Qt::Key_Escape:
                clearAndReturn();
                return true;
            default:
                break;
        }
    }
    return QWidget::eventFilter(watched, event);
}
