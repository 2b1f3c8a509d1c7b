#include "shell/configuration/page/UndoBar.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"

using namespace Fenk;

namespace {
constexpr int OfferMs = 10000;
}

UndoBar::UndoBar(QWidget* parent)
    : QWidget(parent), m_text(new Label(Label::Secondary)), m_button(new QPushButton(tr("Undo"))) {
    m_text->setObjectName("undo_label");
    m_text->setElided(true);
    m_button->setObjectName("undo_btn");
    m_button->setToolTip(QKeySequence(QKeySequence::Undo).toString(QKeySequence::NativeText));
    setButtonKind(m_button, ButtonKind::Quiet);
    m_timer.setSingleShot(true);
    m_timer.setInterval(OfferMs);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space8);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_button);
    const auto take = [this] {
        const auto undo = m_undo;
        end();
        if (undo)
            undo();
    };
    connect(m_button, &QPushButton::clicked, this, take);
    connect(&m_timer, &QTimer::timeout, this, &UndoBar::hideOffer);
    connect(new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, this, take);
    end();
}

void UndoBar::offer(const QString& what, const QObject* owner, const std::function<void()>& undo) {
    m_owner = owner;
    m_undo = undo;
    m_text->setText(tr("%1 has been changed").arg(what));
    m_text->show();
    m_button->show();
    m_timer.start();
}

void UndoBar::withdraw(const QObject* owner) {
    if (owner == m_owner)
        end();
}

void UndoBar::end() {
    m_owner = nullptr;
    m_undo = {};
    hideOffer();
}

void UndoBar::hideOffer() {
    m_timer.stop();
    m_text->hide();
    m_button->hide();
}
