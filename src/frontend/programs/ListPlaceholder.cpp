#include "programs/ListPlaceholder.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

ListPlaceholder::ListPlaceholder(const QIcon& icon, const QString& sentence, const QString& buttonWord,
                                 QWidget* parent)
    : QWidget(parent), m_detail(new Label(Label::Secondary)) {
    setAccessibleName(sentence);
    auto* picture = new QLabel;
    const auto draw = [picture, icon] {
        picture->setPixmap(icon.pixmap(Tokens::IconTile, Tokens::IconTile));
    };
    draw();
    connect(Theme::instance(), &Theme::themeTypeChanged, picture, draw);
    picture->setAlignment(Qt::AlignCenter);
    auto* words = new Label(sentence, Label::Secondary);
    words->setAlignment(Qt::AlignCenter);
    m_detail->setAlignment(Qt::AlignCenter);
    m_detail->setReadingWidth(Tokens::DialogMaxWidth);
    m_detail->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_detail->hide();
    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(Tokens::Space16);
    layout->addStretch(2);
    layout->addWidget(picture);
    layout->addWidget(words);
    layout->addWidget(m_detail, 0, Qt::AlignHCenter);
    if (!buttonWord.isEmpty()) {
        m_button = new QPushButton(buttonWord);
        m_button->setAccessibleName(buttonWord);
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
