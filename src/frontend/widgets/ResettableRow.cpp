#include "widgets/ResettableRow.h"

#include <QFrame>
#include <QHBoxLayout>

#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/SettingRow.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

void ResettableRow::setUp(const QString& label, const QString& tip, const QString& help, QWidget* control) {
    m_control = control;
    m_line = new QWidget;
    m_reset = new IconButton("fenk-refresh", tr("Reset"), nullptr, IconButton::Compact);
    m_control->setAccessibleName(label);
    m_control->setAccessibleDescription(help);
    m_reset->setObjectName("reset_btn");
    m_reset->setAccessibleName(tr("Reset %1").arg(label));
    QSizePolicy keepsPlace = m_reset->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    m_reset->setSizePolicy(keepsPlace);
    m_reset->hide();
    connect(m_reset, &QToolButton::clicked, this, &ResettableRow::resetRequested);
    auto* side = new QWidget;
    auto* controls = new QHBoxLayout(side);
    controls->setContentsMargins(0, 0, 0, 0);
    controls->setSpacing(Tokens::Space8);
    controls->addWidget(m_reset);
    controls->addWidget(m_control);
    m_row = new SettingRow(label, tip, side);
    m_row->setToolTip(plainToolTip(help));

    auto* line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFixedHeight(1);
    auto* inset = new QHBoxLayout(m_line);
    inset->setContentsMargins(Tokens::Space16, 0, Tokens::Space16, 0);
    inset->addWidget(line);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_line);
    layout->addWidget(m_row);
}

bool ResettableRow::isResettable() const {
    return !m_reset->isHidden();
}

void ResettableRow::setResettable(bool isResettable) {
    if (m_reset->hasFocus() && !isResettable)
        m_control->setFocus();
    m_reset->setVisible(isResettable);
}

void ResettableRow::setSeparated(bool separated) {
    m_line->setVisible(separated);
}
