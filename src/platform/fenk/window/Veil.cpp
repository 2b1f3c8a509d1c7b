#include "fenk/window/Veil.h"

#include <QEvent>
#include <QPainter>

#include "fenk/style/Color.h"
#include "fenk/style/Paint.h"

namespace Fenk {

namespace {

qreal radiusOf(const QWidget* window) {
    const bool round = window->testAttribute(Qt::WA_TranslucentBackground) && !window->isMaximized() &&
                       !window->isFullScreen();
    return round ? Tokens::RadiusWindow : 0;
}

}  // namespace

Veil::Veil(QWidget* window) : QWidget(window) {
    setObjectName("veil");
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    resize(window->size());
    window->installEventFilter(this);
}

Veil* Veil::of(QWidget* window) {
    auto* veil = window->findChild<Veil*>(QString(), Qt::FindDirectChildrenOnly);
    return veil ? veil : new Veil(window);
}

void Veil::add(QWidget* dialog) {
    if (m_dialogs.contains(dialog))
        return;
    m_dialogs.append(dialog);
    dialog->installEventFilter(this);
    raise();
    show();
    update();
}

void Veil::remove(QWidget* dialog) {
    m_dialogs.removeAll(dialog);
    dialog->removeEventFilter(this);
    update();
    if (m_dialogs.isEmpty()) {
        setParent(nullptr);  // so that of() no longer finds it
        deleteLater();
    }
}

bool Veil::eventFilter(QObject* watched, QEvent* event) {
    const bool isPlaced = event->type() == QEvent::Move || event->type() == QEvent::Resize;
    if (isPlaced && watched == parentWidget())
        resize(parentWidget()->size());
    if (isPlaced)
        update();
    return false;
}

void Veil::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    Paint::box(&painter, rect(), radiusOf(window()), withAlpha(Qt::black, Tokens::VeilOpacity));
    for (const QWidget* dialog : qAsConst(m_dialogs)) {
        // The desktop's native file dialog is shown instead of Qt's, which stays invisible.
        if (dialog->testAttribute(Qt::WA_DontShowOnScreen))
            continue;
        const QRect place = dialog->frameGeometry();
        Paint::shadow(&painter, QRect(mapFromGlobal(place.topLeft()), place.size()), radiusOf(dialog));
    }
}

}  // namespace Fenk
