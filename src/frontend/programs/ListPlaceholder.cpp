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
    : QWidget(parent), m_detail(new Label(Label::Secondary)) {
    setAccessibleName(text);
    auto* picture = new QLabel;
    const auto draw = [picture, icon] {
        picture->setPixmap(icon.pixmap(Tokens::IconTile, Tokens::IconTile));
    };
    draw();
    connect(Theme::instance(), &Theme::themeTypeChanged, picture, draw);
    picture->setAlignment(Qt::AlignCenter);
    auto* label = new Label(text, Label::Secondary);
    label->setAlignment(Qt::AlignCenter);
    m_detail->setAlignment(Qt::AlignCenter);
    m_detail->setReadingWidth(Tokens::DialogMaxWidth);
    m_detail->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_detail->hide();
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(Tokens::Space16);
    layout->addStretch(2);
    layout->addWidget(picture);
    layout->addWidget(label);
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
