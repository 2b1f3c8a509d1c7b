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
    // A file that is dropped here is to be run like anywhere else.
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
        m_before = old;
        m_isFromElsewhere = true;
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

void SearchWidget::stepBack() {
    m_edit->clear();
    if (!m_isFromElsewhere)
        return;
    m_isFromElsewhere = false;
    if (m_before && m_before->isVisible() && m_before->focusPolicy() != Qt::NoFocus)
        m_before->setFocus(Qt::OtherFocusReason);
    else
        Q_EMIT leaveForResults();
}

bool SearchWidget::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
            case Qt::Key_Down:
            case Qt::Key_Return:
            case Qt::Key_Enter:
                Q_EMIT leaveForResults();
                return true;
            case Qt::Key_Escape:
                stepBack();
                return true;
            default:
                break;
        }
    }
    return QWidget::eventFilter(watched, event);
}
