#include "shell/configuration/page/BasicPage.h"

#include <QPushButton>
#include <QVBoxLayout>

#include "fenk/controls/Card.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/page/ComponentsSwitcherWidget.h"
#include "shell/configuration/page/SettingControlRow.h"
#include "shell/configuration/rules/SettingTable.h"
#include "widgets/PageArea.h"

using namespace Fenk;

namespace {

/// Where a card begins.
const struct {
    Setting first;
    const char* title;
} Groups[] = {
    {Setting::Renderer, QT_TRANSLATE_NOOP("BasicPage", "Graphics")},
    {Setting::WindowsVersion, QT_TRANSLATE_NOOP("BasicPage", "Windows and Wine")},
};

}  // namespace

BasicPage::BasicPage(BottleSettings* settings, QWidget* parent)
    : QScrollArea(parent), m_settings(settings), m_proton(makeProtonLink()) {
    setObjectName("basic_page");
    auto* inner = new QWidget;
    auto* layout = new QVBoxLayout(inner);
    layout->setContentsMargins(Tokens::RingExtent, 0, Tokens::Space12, Tokens::Space8);
    layout->setSpacing(Tokens::Space8);
    QVBoxLayout* rows = nullptr;
    for (const SettingInfo& info : SettingTable::all()) {
        for (const auto& group : Groups) {
            if (group.first != info.setting)
                continue;
            m_groups.append({new Label(tr(group.title), Label::Strong), new Card, {}});
            auto* content = new QWidget;
            rows = new QVBoxLayout(content);
            rows->setContentsMargins(0, 0, 0, 0);
            rows->setSpacing(0);
            m_groups.last().card->addRow(content);
            layout->addWidget(m_groups.last().title);
            layout->addWidget(m_groups.last().card);
            layout->addSpacing(Tokens::Space8);
        }
        auto* row = new SettingControlRow(info);
        connect(row, &SettingControlRow::chosen, this, &BasicPage::chosen);
        connect(row, &SettingControlRow::setupLeft, settings, &BottleSettings::cancelSetup);
        rows->addWidget(row);
        if (info.setting == Setting::Runner)
            rows->addWidget(m_proton);
        m_rows.append(row);
        m_groups.last().rows.append(row);
    }
    layout->addStretch();
    PageArea::setUp(this, inner);
    filter({});
    connect(settings, &BottleSettings::changed, this, &BasicPage::refresh);
    refresh();
}

QWidget* BasicPage::makeProtonLink() {
    auto* link = new QPushButton(tr("Install proton"));
    link->setObjectName("proton_tips_btn");
    setButtonKind(link, ButtonKind::Quiet);
    connect(link, &QPushButton::clicked, this, &BasicPage::protonRequested);
    auto* item = new QWidget;
    item->setAccessibleName("basic_settings_item");
    auto* layout = new QHBoxLayout(item);
    layout->setContentsMargins(Tokens::Space16, 0, Tokens::Space16, Tokens::Space8);
    layout->addStretch();
    layout->addWidget(link);
    return item;
}

void BasicPage::refresh() {
    const SettingRowStates states = m_settings->rowStates();
    for (SettingControlRow* row : m_rows) {
        const Setting setting = row->setting();
        row->setValue(m_settings->values().value(setting), states[size_t(setting)]);
        if (!row->switcher())
            continue;
        const ComponentSetup& setup = m_settings->setup(setting);
        const ComponentOffer offer = m_settings->offer(setting);
        row->switcher()->setOffer(offer, m_settings->values().text(setting));
        row->switcher()->setSetup(setup);
        // A bare list shows its obstacle itself.
        row->setProblem(!setup.reason().isEmpty() || offer.isBare() ? setup.reason() : offer.obstacle);
        row->setBusy(setup.isUnderWay());
    }
}

int BasicPage::filter(const QString& text) {
    int count = 0;
    for (const Group& group : m_groups) {
        int shown = 0;
        for (SettingControlRow* row : group.rows) {
            const bool fits = text.isEmpty() || row->matches(text);
            row->setVisible(fits);
            row->setSeparated(fits && shown > 0);
            if (row->setting() == Setting::Runner)
                m_proton->setVisible(fits);
            shown += fits;
        }
        group.title->setVisible(shown > 0);
        group.card->setVisible(shown > 0);
        count += shown;
    }
    return count;
}

QStringList BasicPage::changedSettings() const {
    QStringList labels;
    for (const SettingControlRow* row : m_rows) {
        if (row->isResettable())
            labels += SettingTable::label(row->setting());
    }
    return labels;
}

/// One setting may change what can be done with the next.
void BasicPage::resetAll() {
    for (SettingControlRow* row : qAsConst(m_rows)) {
        if (row->isResettable())
            row->reset();
    }
}
