#include "shell/SearchWidget.h"

#include <QHBoxLayout>
#include <QKeyEvent>

#include "fenk/SearchEdit.h"

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

bool SearchWidget::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
            case Qt::Key_Down:
            case Qt::Key_Return:
            case Qt::Key_Enter:
                Q_EMIT leaveForResults();
                return true;
            default:
                break;
        }
    }
    return QWidget::eventFilter(watched, event);
}
