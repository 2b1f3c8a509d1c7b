#include "store/install/DependencyWarningWidget.h"

#include <QHBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "store/install/CommonInfoBaseDialog.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;

DependencyWarningWidget::DependencyWarningWidget(QWidget* parent)
    : QWidget(parent), m_picture(new QLabel), m_text(new Label(Label::Body)) {
    setObjectName("dependencyWarningWidget");
    m_picture->setFixedSize(Tokens::IconLarge, Tokens::IconLarge);
    m_text->setObjectName("dependency_warning_text");
    m_text->setTextFormat(Qt::RichText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    connect(m_text, &QLabel::linkActivated, this, &openWebLink);
    connect(Theme::instance(), &Theme::changed, this, &DependencyWarningWidget::showPicture);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space12);
    layout->addWidget(m_picture, 0, Qt::AlignTop);
    layout->addWidget(m_text, 1);
    showPicture();
}

void DependencyWarningWidget::setText(const QString& html) {
    m_text->setText(html);
}

void DependencyWarningWidget::setGood(bool isGood) {
    m_isGood = isGood;
    showPicture();
}

void DependencyWarningWidget::showPicture() {
    const QIcon icon = m_isGood ? QIcon(widgetImage("ok.svg")) : warningIcon();
    m_picture->setPixmap(icon.pixmap(window()->windowHandle(), m_picture->size()));
    m_picture->setAccessibleName(m_isGood ? tr("Ready") : tr("Needs attention"));
}
