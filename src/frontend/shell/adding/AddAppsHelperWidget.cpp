#include "shell/adding/AddAppsHelperWidget.h"

#include <QApplication>
#include <QButtonGroup>
#include <QDebug>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>

#include "fenk/style/SymbolicIconEngine.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "shell/adding/AddGreenFileWidget.h"
#include "shell/adding/AddLocalFileWidget.h"
#include "shell/adding/AddOnlineFileWidget.h"
#include "shell/adding/AddingTexts.h"
#include "shell/requests/AddInputs.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;

namespace {

/// The pictures of the tabs; the second is for the chosen one.
const char* const Images[][2] = {{"localfile_default.svg", "localfile.svg"},
                                 {"onlinedown_default.svg", "onlinedown.svg"},
                                 {"greenfile_default.svg", "greenfile.svg"}};

QPixmap picture(const char* image, Theme::Role role, qreal ratio) {
    return tintedPixmap(QIcon(widgetImage(image)), {Tokens::IconMedium, Tokens::IconMedium}, ratio,
                        Theme::instance()->color(role));
}

}  // namespace

AddAppsHelperWidget::AddAppsHelperWidget(QWidget* parent)
    : QWidget(parent),
      m_buttons(new QButtonGroup(this)),
      m_tabs(new QStackedWidget),
      m_local(new AddLocalFileWidget),
      m_online(new AddOnlineFileWidget),
      m_green(new AddGreenFileWidget) {
    setObjectName("add_apps_helper");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space16);
    auto* row = new QHBoxLayout;
    row->setSpacing(Tokens::Space8);
    layout->addLayout(row);
    layout->addWidget(m_tabs, 1);
    addTab(m_local, "local_tab", AddingTexts::localTab(), &AddAppsHelperWidget::onSelectLocalFileClicked);
    addTab(m_online, "online_tab", AddingTexts::onlineTab(), &AddAppsHelperWidget::onSelectOnlineFileClicked);
    addTab(m_green, "portable_tab", AddingTexts::portableTab(),
           &AddAppsHelperWidget::onSelectGreenFileClicked);
    for (QAbstractButton* button : m_buttons->buttons())
        row->addWidget(button);
    row->addStretch();
    for (AddPathTab* tab : {static_cast<AddPathTab*>(m_local), static_cast<AddPathTab*>(m_green)})
        connect(tab, &AddTab::changed, this, [this, tab] { moveFile(tab); });
    connect(m_green, &AddGreenFileWidget::chosen, this, &AddAppsHelperWidget::chosen);
    connect(Theme::instance(), &Theme::changed, this, &AddAppsHelperWidget::paintIcons);
    paintIcons();
    showTab(LocalTab);
}

void AddAppsHelperWidget::addTab(AddTab* tab, const char* name, const QString& title,
                                 void (AddAppsHelperWidget::*select)()) {
    auto* button = new QPushButton(title);
    button->setObjectName(name);
    button->setCheckable(true);
    button->setIconSize({Tokens::IconMedium, Tokens::IconMedium});
    setButtonKind(button, ButtonKind::Quiet);
    m_buttons->addButton(button, m_tabs->count());
    m_tabs->addWidget(tab);
    connect(button, &QPushButton::clicked, this, select);
    connect(tab, &AddTab::changed, this, [this] { Q_EMIT readyChanged(isReady()); });
    connect(tab, &AddTab::added, this, &AddAppsHelperWidget::add);
}

void AddAppsHelperWidget::paintIcons() {
    for (QAbstractButton* button : m_buttons->buttons()) {
        const auto& images = Images[m_buttons->id(button)];
        QIcon icon(picture(images[0], Theme::Secondary, devicePixelRatioF()));
        icon.addPixmap(picture(images[1], Theme::Accent, devicePixelRatioF()), QIcon::Normal, QIcon::On);
        button->setIcon(icon);
    }
}

void AddAppsHelperWidget::onSelectLocalFileClicked() {
    qInfo() << "onSelectLocalFileClicked";
    showTab(LocalTab);
}

void AddAppsHelperWidget::onSelectOnlineFileClicked() {
    qInfo() << "onSelectOnlineFileClicked";
    showTab(OnlineTab);
}

void AddAppsHelperWidget::onSelectGreenFileClicked() {
    qInfo() << "onSelectGreenFileClicked";
    showTab(PortableTab);
}

void AddAppsHelperWidget::showTab(Tab tab) {
    QAbstractButton* chosen = m_buttons->button(tab);
    chosen->setChecked(true);
    const bool isByKeys =
        m_buttons->buttons().contains(qobject_cast<QAbstractButton*>(QApplication::focusWidget()));
    // Tab reaches the chosen button, arrow keys the others. A click leads into the tab.
    for (QAbstractButton* button : m_buttons->buttons())
        button->setFocusPolicy(button == chosen ? Qt::TabFocus : Qt::NoFocus);
    m_tabs->setCurrentIndex(tab);
    if (!isByKeys && isVisible())
        focusTab();
    Q_EMIT readyChanged(isReady());
}

AddTab* AddAppsHelperWidget::shownTab() const {
    return static_cast<AddTab*>(m_tabs->currentWidget());
}

void AddAppsHelperWidget::focusTab() {
    m_tabs->currentWidget()->setFocus(Qt::OtherFocusReason);
}

bool AddAppsHelperWidget::isReady() const {
    return shownTab()->request().canBeAdded();
}

void AddAppsHelperWidget::clear() {
    m_local->clear();
    m_online->clear();
    m_green->clear();
}

void AddAppsHelperWidget::forget(const QString& path) {
    for (AddTab* tab :
         {static_cast<AddTab*>(m_local), static_cast<AddTab*>(m_online), static_cast<AddTab*>(m_green)}) {
        const AddRequest& request = tab->request();
        if (!request.items.isEmpty() && request.items.first().path == path)
            tab->clear();
    }
}

void AddAppsHelperWidget::add(const QStringList& inputs) {
    if (inputs.size() == 1 && AddInputs::isAddress(inputs.first())) {
        showAddress(inputs.first());
        return;
    }
    if (shownTab() == m_online)
        showTab(LocalTab);
    static_cast<AddPathTab*>(shownTab())->check(inputs);
}

void AddAppsHelperWidget::show(const AddRequest& request) {
    if (request.kind == AddRequest::Kind::Address) {
        showAddress(request.items.first().path);
        return;
    }
    const bool isPortable = request.kind == AddRequest::Kind::Portable;
    (isPortable ? static_cast<AddPathTab*>(m_green) : m_local)->show(request);
    showTab(isPortable ? PortableTab : LocalTab);
}

void AddAppsHelperWidget::showAddress(const QString& address) {
    m_online->setAddress(QUrl(address));
    showTab(OnlineTab);
}

/// To the tab that it belongs to.
void AddAppsHelperWidget::moveFile(AddPathTab* from) {
    const AddRequest request = from->request();
    const bool isPortable = request.kind == AddRequest::Kind::Portable;
    AddPathTab* to = isPortable ? static_cast<AddPathTab*>(m_green) : m_local;
    if (!request.canBeAdded() || from == to)
        return;
    from->clear();
    to->show(request);
    if (shownTab() == from)
        showTab(isPortable ? PortableTab : LocalTab);
}

void AddAppsHelperWidget::onBtnRunClicked() {
    qInfo() << "onBtnRunClicked";
    if (shownTab() == m_green)
        m_green->execBtnRun();
    else if (isReady())
        Q_EMIT chosen(shownTab()->request());
}
