#include "shell/configuration/dlls/DllOverridePage.h"

#include <QDebug>
#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>

#include "backend/BottlesConfig.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/dlls/DllOverrideListView.h"
#include "shell/configuration/dlls/LoadMethods.h"
#include "shell/configuration/dlls/ScanDialog.h"

using namespace Fenk;

DllOverridePage::DllOverridePage(QWidget* parent)
    : TablePage("dlloverride", "cxb_empty_dlllist",
                {tr("Set the way to load the dll, double click the option to edit"), tr("Add an override"),
                 tr("There are no DLLs overridden")},
                new DllOverrideListView, parent),
      m_list(static_cast<DllOverrideListView*>(table())),
      m_scan(new QPushButton(tr("Scan"))),
      m_scanning(makeScanning()) {
    connect(this, &TablePage::addRequested, m_list, &DllOverrideListView::addNewOverride);
    m_scan->setObjectName("dlloverride_scanbtn");
    m_scan->setMenu(new QMenu(m_scan));
    addTool(m_scan);
    addTool(m_scanning);
    setScanning(false);
    addScans();
}

void DllOverridePage::addScans() {
    const QString dlls = tr("Scan app dlls from bottles"), updaters = tr("Disable app updater");
    m_scan->menu()->addAction(dlls, this, [this, dlls] {
        const auto call = [this](const ServiceCalls::Handler& handler) {
            BottlesConfig::instance()->getExternalProgramsDllList(m_list->bottle(), this, handler);
        };
        scan(dlls, call, LoadMethods::NativeThenBuiltin);
    });
    m_scan->menu()->addAction(updaters, this, [this, updaters] {
        const auto call = [this](const ServiceCalls::Handler& handler) {
            BottlesConfig::instance()->getExternalProgramsUpdateExes(m_list->bottle(), this, handler);
        };
        scan(updaters, call, LoadMethods::Disabled);
    });
}

void DllOverridePage::scan(const QString& title, const Scan& call, int method) {
    setScanning(true);
    call([this, title, method, number = ++m_scans](const BusResult& result) {
        if (number != m_scans)
            return;
        setScanning(false);
        onFound(title, result, method);
    });
}

QWidget* DllOverridePage::makeScanning() {
    auto* view = new QWidget;
    auto* spinner = new Spinner;
    spinner->setFixedSize(Tokens::IconSmall, Tokens::IconSmall);
    spinner->start();
    auto* cancel = new QPushButton(tr("Cancel"));
    cancel->setObjectName("dlloverride_cancelbtn");
    connect(cancel, &QPushButton::clicked, this, [this] {
        ++m_scans;
        setScanning(false);
    });
    auto* layout = new QHBoxLayout(view);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space8);
    layout->addWidget(spinner);
    layout->addWidget(new Label(tr("Scanning…")));
    layout->addWidget(cancel);
    return view;
}

void DllOverridePage::setScanning(bool scanning) {
    QPushButton* cancel = m_scanning->findChild<QPushButton*>();
    const bool hadFocus = m_scan->hasFocus() || cancel->hasFocus();
    m_scan->setVisible(!scanning);
    m_scanning->setVisible(scanning);
    if (hadFocus)
        (scanning ? cancel : m_scan)->setFocus();
}

void DllOverridePage::onFound(const QString& title, const BusResult& result, int method) {
    if (!result.ok) {
        qWarning().noquote() << "cannot scan the programs of" << m_list->bottle() << result.errorMessage;
        showError(tr("The programs of this container cannot be scanned: %1").arg(result.errorText()));
        return;
    }
    qInfo().noquote() << result.text;
    const auto changes = ScanChanges::of(m_list->sentRows(), result.strings(), method);
    if (changes.isEmpty()) {
        FloatingMessage::show(this, Theme::icon("fenk-info"), tr("The scan has found nothing to change."));
        return;
    }
    auto* dialog = new ScanDialog(title, changes, method, this);
    connect(dialog, &ScanDialog::applied, m_list,
            [this, method](const QStringList& names) { m_list->merge(names, method); });
    dialog->open();
}
