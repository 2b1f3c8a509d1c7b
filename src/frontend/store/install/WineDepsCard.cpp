#include "store/install/WineDepsCard.h"

#include <QDebug>
#include <QPushButton>

#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/WidgetLook.h"

using namespace Fenk;

WineDepsCard::WineDepsCard(QWidget* parent) : Card(parent) {
    setObjectName("wine_deps_card");
    hide();
}

void WineDepsCard::add(const QString& package) {
    if (m_links.contains(package)) {
        qInfo().noquote() << package << "already exists";
        return;
    }
    auto* link = new QPushButton;
    link->setAccessibleName(package);
    link->setAutoDefault(false);
    link->setIcon(Theme::icon("fenk-external"));
    setButtonKind(link, ButtonKind::Quiet);
    connect(link, &QPushButton::clicked, this, [this, package] { Q_EMIT clicked(package); });
    m_links.insert(package, link);
    addRow(link);
    setState(package, {});
    show();
}

void WineDepsCard::remove(const QString& package) {
    delete m_links.take(package);
    setVisible(!m_links.isEmpty());
}

void WineDepsCard::setState(const QString& package, const QString& text) {
    QPushButton* link = m_links.value(package);
    if (!link)
        return;
    link->setText(text.isEmpty() ? package : package + "  " + text);
    link->setToolTip(text.isEmpty() ? plainToolTip(tr("Install %1").arg(package)) : QString());
    link->setEnabled(text.isEmpty());
}
