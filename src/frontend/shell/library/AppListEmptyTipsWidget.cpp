#include "shell/library/AppListEmptyTipsWidget.h"

#include <QLabel>
#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/controls/SuggestButton.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

namespace {

constexpr int TextWidth = 440;

}  // namespace

AppListEmptyTipsWidget::AppListEmptyTipsWidget(QWidget* parent) : QWidget(parent) {
    setObjectName("applist_empty");

    auto* icon = new QLabel;
    icon->setPixmap(Fenk::Theme::icon("cellarix").pixmap(Fenk::Tokens::IconBanner, Fenk::Tokens::IconBanner));
    icon->setAlignment(Qt::AlignCenter);
    auto* title = new Fenk::Label(tr("Run a Windows program"), Fenk::Label::Title);
    title->setAlignment(Qt::AlignCenter);
    auto* text = new Fenk::Label(tr("Choose a program file or drop it here. Cellarix makes a place for it, "
                                    "starts it and remembers it."),
                                 Fenk::Label::Secondary);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    text->setFixedWidth(TextWidth);
    text->setMinimumHeight(text->heightForWidth(TextWidth));
    auto* button = new Fenk::SuggestButton(tr("Add Program…"));
    button->setObjectName("welcome_openbtn");
    button->setAccessibleName("welcome_openbtn");
    button->setDefault(true);
    setFocusProxy(button);
    connect(button, &QPushButton::clicked, this, &AppListEmptyTipsWidget::addRequested);
    auto* restore = new QPushButton(tr("Restore Backup…"));
    restore->setObjectName("welcome_restorebtn");
    connect(restore, &QPushButton::clicked, this, &AppListEmptyTipsWidget::restoreRequested);

    auto* layout = new QVBoxLayout(this);
    layout->setSpacing(Fenk::Tokens::Space16);
    layout->addStretch(2);
    layout->addWidget(icon);
    layout->addWidget(title);
    layout->addWidget(text, 0, Qt::AlignHCenter);
    layout->addSpacing(Fenk::Tokens::Space8);
    layout->addWidget(button, 0, Qt::AlignHCenter);
    layout->addWidget(restore, 0, Qt::AlignHCenter);
    layout->addStretch(3);
}
