#include "shell/associations/FileAssosiationsExportDialog.h"

#include <QAbstractButton>
#include <QDebug>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "programs/ListPlaceholder.h"
#include "programs/Program.h"
#include "shell/associations/AssociationModel.h"
#include "shell/associations/FileAssosiationsListView.h"

using namespace Fenk;

namespace {
constexpr int ShownRows = 6;
}

FileAssosiationsExportDialog::FileAssosiationsExportDialog(const QString& bottle, QWidget* parent)
    : Dialog(tr("Export File Associations"),
             tr("Checked types will open with the applications of this container."), parent),
      m_bottle(bottle),
      m_model(new AssociationModel(this)),
      m_list(new FileAssosiationsListView),
      m_pages(new QStackedWidget) {
    setObjectName("file_associations_dialog");
    setFixedWidth(Tokens::DialogMaxWidth);
    m_list->setModel(m_model);
    auto* waiting = new QWidget;
    auto* spinner = new Spinner;
    auto* middle = new QVBoxLayout(waiting);
    middle->addWidget(spinner, 0, Qt::AlignCenter);
    spinner->startDelayed();
    m_pages->addWidget(waiting);
    m_pages->addWidget(m_list);
    m_pages->setFixedHeight(Tokens::HeadHeight + ShownRows * Tokens::RowHeight + 2 * m_list->frameWidth());
    addContent(m_pages);
    addButton(tr("Cancel"));
    m_export = addButton(tr("Export"), true, ButtonRecommend);
    button(m_export)->setEnabled(false);
    connect(this, &Dialog::buttonClicked, this, [this](int index) {
        if (index == m_export)
            exportChosen();
    });
    BottlesConfig::instance()->watchBottle(bottle, this,
                                           [this](const BusResult& result) { onRecord(result); });
}

void FileAssosiationsExportDialog::openFor(const ProgramRef& program, QWidget* over) {
    auto* dialog = new FileAssosiationsExportDialog(program.bottle, over);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void FileAssosiationsExportDialog::onRecord(const BusResult& result) {
    if (!result.ok) {
        qWarning().noquote() << "no associations of" << m_bottle << result.errorMessage;
        showPlaceholder(tr("The file associations cannot be read at the moment. Please try again later."));
        return;
    }
    const QString path = BottleRecord::path(result.object());
    inBackground(
        this,
        [path, bottle = m_bottle] {
            return BottleAssociations::rows(BottleAssociations::read(path),
                                            BottleAssociations::exported(bottle));
        },
        [this](const QVector<BottleAssociations::Row>& rows) { fill(rows); });
}

void FileAssosiationsExportDialog::fill(const QVector<BottleAssociations::Row>& rows) {
    // An export of no rows would withdraw everything that is exported.
    if (rows.isEmpty()) {
        showPlaceholder(tr("No application of this container opens files or links."));
        return;
    }
    m_model->setRows(rows);
    m_list->setCurrentIndex(m_model->index(0, AssociationModel::Extension));
    m_pages->setCurrentWidget(m_list);
    m_list->setFocus();
    button(m_export)->setEnabled(true);
}

void FileAssosiationsExportDialog::showPlaceholder(const QString& text) {
    m_pages->setCurrentIndex(m_pages->addWidget(new ListPlaceholder(Theme::icon("fenk-info"), text)));
}

void FileAssosiationsExportDialog::exportChosen() {
    const QStringList keys = m_model->checkedKeys();
    qDebug().noquote() << "export file associations of" << m_bottle << keys.join(", ");
    BottlesConfig::instance()->exportFileAssociations(m_bottle, keys);
}
