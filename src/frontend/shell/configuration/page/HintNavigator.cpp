#include "shell/configuration/page/HintNavigator.h"

#include <QComboBox>
#include <QDebug>
#include <QDesktopServices>
#include <QDir>

#include "backend/BottleRecord.h"
#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "backend/MissingFonts.h"
#include "shell/configuration/hints/DebuggingLogsView.h"
#include "shell/configuration/hints/HintHtml.h"
#include "shell/configuration/hints/HintLink.h"
#include "shell/configuration/page/BasicPage.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/page/BottlesConfigView.h"
#include "shell/configuration/page/ComponentsSwitcherWidget.h"
#include "shell/configuration/page/ConfigPages.h"
#include "shell/configuration/page/SettingControlRow.h"

HintNavigator::HintNavigator(BottleSettings* settings, ConfigPages* pages, BasicPage* basic,
                             DebuggingLogsView* hints, QObject* parent)
    : QObject(parent), m_settings(settings), m_pages(pages), m_basic(basic), m_hints(hints) {}

void HintNavigator::follow(const QUrl& anchor) {
    qInfo().noquote() << HintLink::target(anchor);
    const HintLink link = HintLink::of(anchor);
    switch (link.kind) {
        case HintLink::Kind::Component:
            m_pages->showMatches(BottlesConfigView::Components, link.text);
            break;
        case HintLink::Kind::Fonts:
            fixFonts(link.names);
            break;
        case HintLink::Kind::DriveC:
            openFolder(link.text);
            break;
        case HintLink::Kind::Web:
            QDesktopServices::openUrl(anchor);
            break;
        case HintLink::Kind::Page:
            m_pages->showPage(link.page);
            break;
        case HintLink::Kind::Runner:
            showRunner(link.text);
            break;
        case HintLink::Kind::None:
            break;
    }
}

/// Shown as done also where the bottle has no folder of fonts, which leaves a warning.
void HintNavigator::fixFonts(const QStringList& names) {
    const auto fix = [path = BottleRecord::path(m_settings->record()), names] {
        MissingFonts::fix(path, names);
    };
    inBackground(this, fix, [this, page = m_hints->page()] {
        if (m_hints->page() == page)  // and not the hints of another program
            m_hints->showPage(HintHtml::withFontsFixed(page));
    });
}

void HintNavigator::openFolder(const QString& path) {
    const QString bottle = BottleRecord::path(m_settings->record());
    if (bottle.isEmpty())
        return;
    const QString folder = QDir::cleanPath(bottle + "/drive_c/" + path);
    qInfo().noquote() << "open dir " << folder;
    DesktopUtils::openLocal(folder);
}

/// Chooses nothing: the user looks at it first.
void HintNavigator::showRunner(const QString& runner) {
    QComboBox* versions = m_basic->row(Setting::Runner)->switcher()->combo();
    const QSignalBlocker blocker(versions);
    const int index = versions->findData(runner);
    if (index >= 0)
        versions->setCurrentIndex(index);
    m_pages->showMatches(BottlesConfigView::Components, QString(runner).replace('-', ' '));
}
