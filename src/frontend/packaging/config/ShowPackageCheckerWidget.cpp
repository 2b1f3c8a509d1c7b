#include "packaging/config/ShowPackageCheckerWidget.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QPushButton>
#include <utility>

#include "fenk/controls/Card.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "packaging/config/PackageChecker.h"
#include "packaging/config/PackageDirectories.h"
#include "packaging/config/PackageEntryWidget.h"

using namespace Fenk;

namespace {
constexpr int ShownRows = 3;  // more scroll
}

ShowPackageCheckerWidget::ShowPackageCheckerWidget(PackageChecker* checker, QWidget* parent)
    : QScrollArea(parent),
      m_checker(checker),
      m_card(new Card),
      m_empty(new Label(Label::Secondary)),
      m_retry(new QPushButton(tr("Retry"))),
      m_stateRow(new QWidget) {
    setObjectName("package_shortcuts");
    setAccessibleName("package_shortcuts");
    setFrameShape(NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    fitHeight();
    setWidget(m_card);
    viewport()->setAutoFillBackground(false);
    m_card->setAutoFillBackground(false);
    m_empty->setAlignment(Qt::AlignCenter);
    m_retry->setObjectName("package_shortcuts_retry");
    m_retry->setAutoDefault(false);
    auto* layout = new QHBoxLayout(m_stateRow);
    layout->setContentsMargins(Tokens::Space12, Tokens::Space4, Tokens::Space12, Tokens::Space4);
    layout->addWidget(m_empty, 1);
    layout->addWidget(m_retry);
    m_stateRow->setFixedHeight(Tokens::RowHeight);
    m_card->addRow(m_stateRow);
    connect(m_retry, &QPushButton::clicked, checker, [checker] { checker->load(checker->bottleName()); });
    showState();
    for (const QString& id : checker->entries().keys())
        showEntry(id);
    connect(checker, &PackageChecker::update, this, &ShowPackageCheckerWidget::showEntry);
}

void ShowPackageCheckerWidget::showState() {
    if (!m_stateRow)
        return;
    const PackageChecker::State state = m_checker->state();
    m_empty->setText(state == PackageChecker::State::Loading   ? tr("Reading the programs…")
                     : state == PackageChecker::State::Missing ? tr("The bottle cannot be read")
                                                               : tr("The bottle has no programs yet"));
    m_retry->setVisible(state == PackageChecker::State::Missing);
}

void ShowPackageCheckerWidget::showEntry(const QString& id) {
    if (!m_checker->entries().contains(id)) {
        showState();
        return;
    }
    PackageEntryWidget* row = m_rows.value(id);
    (row ? row : add(id))->setEntry(m_checker->entries().value(id));
}

PackageEntryWidget* ShowPackageCheckerWidget::add(const QString& id) {
    delete std::exchange(m_stateRow, nullptr);
    auto* row = new PackageEntryWidget(id);
    m_rows.insert(id, row);
    m_card->addRow(row);
    fitHeight();
    connect(row, &PackageEntryWidget::closed, this,
            [this](PackageEntryWidget* widget) { m_checker->unselect(widget->id()); });
    connect(row, &PackageEntryWidget::added, m_checker, &PackageChecker::select);
    connect(row, &PackageEntryWidget::onlyExeWanted, m_checker, &PackageChecker::setOnlyCopyExe);
    connect(row, &PackageEntryWidget::directoryWanted, this, &ShowPackageCheckerWidget::chooseDirectory);
    return row;
}

void ShowPackageCheckerWidget::fitHeight() {
    setFixedHeight(qBound(1, m_rows.size(), ShownRows) * Tokens::RowHeight + Tokens::Space8);
}

void ShowPackageCheckerWidget::chooseDirectory(const QString& id) {
    const QString folder = QFileInfo(m_checker->entries().value(id).path).absolutePath();
    auto* dialog = new QFileDialog(window(), tr("Choose a Folder"), folder);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, [this, id](const QString& directory) {
        if (PackageDirectories::isNearRoot(directory))
            FloatingMessage::show(
                this, Theme::icon("dialog-warning"),
                tr("The folder %1 is too close to the root of the disk to go along whole.").arg(directory));
        m_checker->setDirectory(id, directory);
    });
    dialog->open();
}
