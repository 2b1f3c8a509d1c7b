#include "packaging/config/PackageEntryWidget.h"

#include <QHBoxLayout>
#include <QLabel>

#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "packaging/config/PackageEntry.h"
#include "programs/ProgramIcons.h"

using namespace Fenk;

namespace {

IconButton* button(const char* icon, const QString& word) {
    return new IconButton(icon, word, nullptr, IconButton::Compact);
}

}  // namespace

PackageEntryWidget::PackageEntryWidget(const QString& id, QWidget* parent)
    : QWidget(parent),
      m_id(id),
      m_icon(new QLabel),
      m_name(new Label(Label::Body)),
      m_extent(new Label(Label::Small)),
      m_alone(button("cxb_app_default_icon", tr("Only the program file"))),
      m_directory(button("fenk-folder", tr("Choose a folder that goes along"))),
      m_add(button("fenk-add", tr("Add to the package"))),
      m_close(button("cxb_tab_close", tr("Leave out of the package"))) {
    m_icon->setFixedSize(Tokens::IconMedium, Tokens::IconMedium);
    m_name->setElided(true);
    m_extent->setElided(true);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addWidget(m_name);
    texts->addWidget(m_extent);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(Tokens::Space12, Tokens::Space4, Tokens::Space8, Tokens::Space4);
    layout->setSpacing(Tokens::Space8);
    layout->addWidget(m_icon);
    layout->addLayout(texts, 1);
    for (IconButton* each : {m_alone, m_directory, m_add, m_close})
        layout->addWidget(each);
    connect(ProgramIcons::instance(), &ProgramIcons::ready, this, [this](const QString& file) {
        if (file == m_iconFile)
            showIcon();
    });
    connect(m_alone, &QToolButton::clicked, this, [this] { Q_EMIT onlyExeWanted(m_id); });
    connect(m_directory, &QToolButton::clicked, this, [this] { Q_EMIT directoryWanted(m_id); });
    connect(m_add, &QToolButton::clicked, this, [this] { Q_EMIT added(m_id); });
    connect(m_close, &QToolButton::clicked, this, [this] { Q_EMIT closed(this); });
}

QString PackageEntryWidget::extent(const PackageEntry& entry) {
    if (entry.inBottles)
        return tr("It is in the bottle");
    if (entry.onlyCopyExe || entry.dirToPackage.isEmpty())
        return tr("Only the program");
    return tr("With the folder %1").arg(entry.dirToPackage);
}

void PackageEntryWidget::showIcon() {
    const int edge = qRound(Tokens::IconMedium * devicePixelRatioF());
    QPixmap picture = ProgramIcons::instance()->picture(m_iconFile, edge);
    picture.setDevicePixelRatio(devicePixelRatioF());
    m_icon->setPixmap(picture);
}

void PackageEntryWidget::setEntry(const PackageEntry& entry) {
    m_iconFile = entry.icon;
    showIcon();
    m_name->setText(entry.name);
    m_name->setEnabled(entry.selected);
    m_extent->setText(entry.selected ? extent(entry) : QString());
    m_extent->setVisible(entry.selected);
    const bool isChangeable = entry.selected && !entry.inBottles;
    m_alone->setVisible(isChangeable && !entry.onlyCopyExe && !entry.dirToPackage.isEmpty());
    m_directory->setVisible(isChangeable);
    m_close->setVisible(isChangeable);
    m_add->setVisible(!entry.selected);
}
