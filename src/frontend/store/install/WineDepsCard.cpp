#include "store/install/WineDepsCard.h"

#include <QFontMetrics>
#include <QPushButton>

#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/WidgetLook.h"

using namespace Fenk;

namespace {
constexpr int NameWidth = 320;
}

WineDepsCard::WineDepsCard(QWidget* parent) : Card(parent) {
    setObjectName("wineDepsCard");
    hide();
}

void WineDepsCard::showPackages(const QStringList& packages) {
    const QStringList known = m_links.keys();
    for (const QString& package : known) {
        if (!packages.contains(package))
            delete m_links.take(package);
    }
    for (const QString& package : packages) {
        if (!m_links.contains(package))
            add(package);
    }
    setVisible(!m_links.isEmpty());
}

void WineDepsCard::add(const QString& package) {
    auto* link = new QPushButton;
    link->setAccessibleName(package);
    link->setAutoDefault(false);
    link->setIcon(Theme::icon("fenk-external"));
    setButtonKind(link, ButtonKind::Quiet);
    connect(link, &QPushButton::clicked, this, [this, package] { Q_EMIT clicked(package); });
    m_links.insert(package, link);
    addRow(link);
    setState(package, {});
}

void WineDepsCard::setState(const QString& package, const QString& text) {
    QPushButton* link = m_links.value(package);
    if (!link)
        return;
    const QString name = link->fontMetrics().elidedText(package, Qt::ElideMiddle, NameWidth);
    link->setText(text.isEmpty() ? name : name + "  " + text);
    link->setToolTip(text.isEmpty() ? plainToolTip(tr("Install %1").arg(package)) : QString());
    link->setEnabled(text.isEmpty());
}
