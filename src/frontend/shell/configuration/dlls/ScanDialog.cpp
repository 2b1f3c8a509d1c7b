#include "shell/configuration/dlls/ScanDialog.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QHeaderView>
#include <QTreeWidget>

#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "shell/configuration/dlls/LoadMethods.h"

using namespace Fenk;

namespace {
constexpr int Width = 480;
constexpr int MostRows = 7;
}  // namespace

ScanDialog::ScanDialog(const QString& title, const QVector<ScanChange>& changes, int method, QWidget* parent)
    : Dialog(title, tr("These overrides would be changed:"), parent),
      m_list(new QTreeWidget),
      m_all(new QCheckBox(tr("All"))) {
    setObjectName("scan_dialog");
    setAttribute(Qt::WA_DeleteOnClose);
    m_list->setObjectName("scan_list");
    m_list->setAccessibleName(title);
    m_list->setHeaderLabels({tr("Name"), tr("Load method")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setMinimumWidth(Width);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_list->header()->setStretchLastSection(false);
    setTextAreaLook(m_list);
    const QString after = LoadMethods::text(method);
    for (const ScanChange& change : changes) {
        const QString text =
            change.isNew ? after : tr("%1 → %2").arg(LoadMethods::text(change.before), after);
        auto* item = new QTreeWidgetItem(m_list, {change.name, text});
        item->setCheckState(0, Qt::Checked);
    }
    const int rows = qMin(changes.size(), MostRows);
    m_list->setFixedHeight(Tokens::HeadHeight + rows * Tokens::RowHeight + Tokens::Space24);
    m_list->setCurrentItem(m_list->topLevelItem(0));
    m_all->setObjectName("scan_all");
    addContent(m_all);
    addContent(m_list);
    addButton(tr("Cancel"));
    m_apply = addButton(tr("Apply"), true, ButtonRecommend);
    refresh();
    connect(m_all, &QCheckBox::clicked, this, &ScanDialog::checkAll);
    connect(m_list, &QTreeWidget::itemChanged, this, &ScanDialog::refresh);
    connect(this, &QDialog::finished, this, [this](int answer) {
        if (answer == m_apply)
            Q_EMIT applied(checked());
    });
}

QStringList ScanDialog::checked() const {
    QStringList names;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = m_list->topLevelItem(i);
        if (item->checkState(0) == Qt::Checked)
            names << item->text(0);
    }
    return names;
}

void ScanDialog::checkAll(bool checked) {
    {
        const QSignalBlocker once(m_list);
        for (int i = 0; i < m_list->topLevelItemCount(); ++i)
            m_list->topLevelItem(i)->setCheckState(0, checked ? Qt::Checked : Qt::Unchecked);
    }
    m_list->viewport()->update();
    refresh();
}

/// A click on the box for all goes from some to all, never to some.
void ScanDialog::refresh() {
    const int count = checked().size();
    button(m_apply)->setEnabled(count > 0);
    if (count > 0 && count < m_list->topLevelItemCount()) {
        m_all->setCheckState(Qt::PartiallyChecked);
        return;
    }
    m_all->setTristate(false);
    m_all->setChecked(count > 0);
}
