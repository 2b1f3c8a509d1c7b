#include "programs/ListPlaceholder.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

ListPlaceholder::ListPlaceholder(const QIcon& icon, const QString& text, const QString& buttonText,
                                 QWidget* parent)
    : QWidget(parent),
      m_picture(new QLabel),
      m_label(new Label(Label::Secondary)),
      m_detail(new Label(Label::Secondary)) {
    setIcon(icon);
    connect(Theme::instance(), &Theme::themeTypeChanged, this, [this] { setIcon(m_icon); });
    m_picture->setAlignment(Qt::AlignCenter);
    setText(text);
    m_label->setAlignment(Qt::AlignCenter);
    m_detail->setAlignment(Qt::AlignCenter);
    m_detail->setReadingWidth(Tokens::DialogMaxWidth);
    m_detail->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_detail->hide();
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(Tokens::Space16);
    layout->addStretch(2);
    layout->addWidget(m_picture);
    layout->addWidget(m_label);
    layout->addWidget(m_detail, 0, Qt::AlignHCenter);
    if (!buttonText.isEmpty()) {
        m_button = new QPushButton(buttonText);
        m_button->setAccessibleName(buttonText);
        setFocusProxy(m_button);
        connect(m_button, &QPushButton::clicked, this, &ListPlaceholder::pressed);
        layout->addWidget(m_button, 0, Qt::AlignHCenter);
    }
    layout->addStretch(3);
}

void ListPlaceholder::setDetail(const QString& text) {
    m_detail->setText(text);
    m_detail->setVisible(!text.isEmpty());
    setAccessibleDescription(text);
}

void ListPlaceholder::setText(const QString& text) {
    m_label->setText(text);
    setAccessibleName(text);
}

void ListPlaceholder::setIcon(const QIcon& icon) {
    m_icon = icon;
    m_picture->setPixmap(icon.pixmap(Tokens::IconTile, Tokens::IconTile));
}
