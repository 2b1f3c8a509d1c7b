#include "shell/adding/AddPathTab.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/style/SymbolicIconEngine.h"
#include "fenk/style/Tokens.h"
#include "shell/adding/AddingTexts.h"
#include "shell/adding/FileStateRow.h"
#include "shell/requests/AddInputs.h"
#include "widgets/DropArea.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;

AddPathTab::AddPathTab(const char* image, const QString& choose, const QString& hint, QWidget* parent)
    : AddTab(parent), m_image(image), m_icon(new QLabel), m_choose(new QPushButton(choose)) {
    auto* area = new DropArea;
    area->setObjectName("drop_area");
    m_icon->setAlignment(Qt::AlignCenter);
    auto* drop = new Label(AddingTexts::dropHere(), Label::Body);
    auto* formats = new Label(hint, Label::Small);
    m_choose->setAutoDefault(false);
    auto* row = new QHBoxLayout;
    row->setSpacing(Tokens::Space12);
    row->addStretch();
    row->addWidget(drop);
    row->addWidget(m_choose);
    row->addStretch();
    auto* inside = new QVBoxLayout(area);
    inside->setContentsMargins(Tokens::Space24, Tokens::Space24, Tokens::Space24, Tokens::Space24);
    inside->setSpacing(Tokens::Space12);
    inside->addStretch();
    inside->addWidget(m_icon);
    inside->addLayout(row);
    inside->addWidget(formats, 0, Qt::AlignHCenter);
    inside->addSpacing(Tokens::Space12);
    inside->addWidget(state());
    inside->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(area);
    setFocusProxy(m_choose);
    connect(area, &DropArea::dropped, this,
            [this](const QList<QUrl>& urls) { Q_EMIT added(AddInputs::ofUrls(urls)); });
    connect(m_choose, &QPushButton::clicked, this, &AddPathTab::choose);
    connect(Theme::instance(), &Theme::changed, this, &AddPathTab::paintIcon);
    paintIcon();
}

void AddPathTab::paintIcon() {
    const QSize size(Tokens::IconTile, Tokens::IconTile);
    m_icon->setPixmap(tintedPixmap(QIcon(widgetImage(m_image)), size, devicePixelRatioF(),
                                   Theme::instance()->color(Theme::Accent)));
}

void AddPathTab::check(const QStringList& inputs) {
    state()->check(inputs);
}

void AddPathTab::show(const AddRequest& request) {
    state()->show(request);
}
