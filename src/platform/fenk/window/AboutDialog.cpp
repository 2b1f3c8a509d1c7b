#include "fenk/window/AboutDialog.h"

#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"

namespace Fenk {

AboutDialog::AboutDialog(const Facts& facts, QWidget* parent) : AbstractDialog(parent) {
    setObjectName("about_dialog");
    setAccessibleName(tr("About %1").arg(facts.name));
    setWindowTitle(tr("About %1").arg(facts.name));
    setWindowModality(Qt::WindowModal);
    setFixedWidth(Tokens::DialogMinWidth);

    auto* icon = new QLabel;
    icon->setFixedSize(Tokens::IconBanner, Tokens::IconBanner);
    icon->setPixmap(facts.icon.pixmap(windowHandle(), icon->size()));
    icon->setAccessibleName(facts.name);
    auto* name = new Label(facts.name, Label::Title);
    auto* version = new Label(tr("Version %1").arg(facts.version), Label::Small);
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    version->setVisible(!facts.version.isEmpty());
    auto* description = new Label(facts.description, Label::Secondary);
    description->setWordWrap(true);
    description->setVisible(!facts.description.isEmpty());
    auto* link = new Label(facts.linkHtml, Label::Body);
    link->setTextFormat(Qt::RichText);
    link->setOpenExternalLinks(true);
    link->setTextInteractionFlags(Qt::TextBrowserInteraction);
    link->setVisible(!facts.linkHtml.isEmpty());

    QVBoxLayout* body = bodyLayout();
    body->setContentsMargins(Tokens::Space32, 0, Tokens::Space32, Tokens::Space32);
    body->addWidget(icon, 0, Qt::AlignHCenter);
    body->addSpacing(Tokens::Space16);
    for (Label* label : {name, version, description, link})
        label->setAlignment(Qt::AlignCenter);
    body->addWidget(name);
    body->addSpacing(Tokens::Space4);
    body->addWidget(version);
    body->addSpacing(Tokens::Space16);
    body->addWidget(description);
    body->addSpacing(Tokens::Space12);
    body->addWidget(link);
}

}  // namespace Fenk
