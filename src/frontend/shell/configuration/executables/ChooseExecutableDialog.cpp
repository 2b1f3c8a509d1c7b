#include "shell/configuration/executables/ChooseExecutableDialog.h"

#include <QAbstractButton>
#include <QDebug>
#include <QHeaderView>
#include <QStackedWidget>
#include <QStandardItemModel>
#include <QTreeView>
#include <algorithm>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "programs/ListPlaceholder.h"

using namespace Fenk;

namespace {

constexpr QSize ListSize(520, 320);
constexpr int NameWidth = 220;
constexpr int IconSize = 32;
constexpr int MostReadNames = 200;  ///< each takes a tool, which may take seconds
enum Column { Name, Location };

QStandardItem* makeItem(const QString& text, bool isEntered) {
    auto* item = new QStandardItem(text);
    item->setEditable(false);
    item->setEnabled(!isEntered);
    item->setToolTip(isEntered ? ChooseExecutableDialog::tr("Already in the list of applications")
                               : plainToolTip(text));
    return item;
}

QIcon iconOf(const Executable& executable) {
    QIcon icon;
    for (const QImage& image : executable.images)
        icon.addPixmap(QPixmap::fromImage(image));
    return executable.images.isEmpty() ? Theme::icon("cxb_app_default_icon") : icon;
}

}  // namespace

ChooseExecutableDialog::ChooseExecutableDialog(const QString& title, const QString& bottle, QWidget* parent)
    : Dialog(title, {}, parent),
      m_bottle(bottle),
      m_model(new QStandardItemModel(this)),
      m_list(new QTreeView),
      m_nothing(new ListPlaceholder(Theme::icon("cxb_app_default_icon"),
                                    tr("No other program has been found in this container."))),
      m_failed(new ListPlaceholder(Theme::icon("fenk-warning"),
                                   tr("The programs in this container cannot be read at the moment."),
                                   tr("Retry"))),
      m_pages(new QStackedWidget) {
    makeList(tr("Programs in this container"));
    auto* spinner = new Spinner;
    spinner->startDelayed();
    m_pages->setFixedSize(ListSize);
    m_pages->addWidget(spinner);
    m_pages->addWidget(m_nothing);
    m_pages->addWidget(m_failed);
    m_pages->addWidget(m_list);
    addContent(m_pages);
    addButton(tr("Cancel"));
    const int other = addButton(tr("Another file..."));
    m_add = addButton(tr("Add"), true, ButtonRecommend);
    button(m_add)->setEnabled(false);
    connect(m_failed, &ListPlaceholder::pressed, this, &ChooseExecutableDialog::load);
    connect(m_list, &QTreeView::clicked, this, &ChooseExecutableDialog::onItemClicked);
    connect(m_list, &QTreeView::activated, this, [this] { button(m_add)->click(); });
    connect(this, &Dialog::buttonClicked, this, [this, other](int index) {
        if (index == m_add)
            onOkBtnClicked();
        else if (index == other)
            Q_EMIT fileRequested();
    });
    load();
}

ChooseExecutableDialog::ChooseExecutableDialog(const QString& title, const QVector<Executable>& offered,
                                               QWidget* parent)
    : Dialog(title, tr("The likely one comes first. Those that you choose are added to the library."),
             parent),
      m_model(new QStandardItemModel(this)),
      m_list(new QTreeView),
      m_pages(new QStackedWidget),
      m_takesSeveral(true) {
    makeList(tr("Programs that were found"));
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setIconSize(QSize(IconSize, IconSize));
    m_pages->setFixedSize(ListSize);
    m_pages->addWidget(m_list);
    addContent(m_pages);
    const int cancel = addButton(tr("Cancel"));
    m_add = addButton(tr("Add and Run"), true, ButtonRecommend);
    setOnButtonClickedClose(false);
    connect(m_list, &QTreeView::activated, this, [this] { button(m_add)->click(); });
    connect(this, &Dialog::buttonClicked, this, [this, cancel](int index) {
        if (index == cancel)
            done(-1);
        else
            onOkBtnClicked();
    });
    connect(this, &QDialog::finished, this, [this](int result) {
        if (result != m_add)
            Q_EMIT cancelled();
    });
    fill(offered);
}

void ChooseExecutableDialog::makeList(const QString& accessibleName) {
    setObjectName("choose_executable_dialog");
    setAttribute(Qt::WA_DeleteOnClose);
    m_list->setObjectName("executables_list");
    m_list->setAccessibleName(accessibleName);
    m_list->setModel(m_model);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setTextElideMode(Qt::ElideMiddle);
}

void ChooseExecutableDialog::load() {
    m_pages->setCurrentIndex(0);
    BottlesConfig::instance()->listBottlesAllPrograms(m_bottle, this, [this](const BusResult& result) {
        if (result.ok) {
            onPrograms(result.array());
            return;
        }
        qWarning().noquote() << "cannot list the programs in" << m_bottle << result.errorMessage;
        m_failed->setDetail(result.errorText());
        m_pages->setCurrentWidget(m_failed);
    });
}

void ChooseExecutableDialog::onPrograms(const QJsonArray& programs) {
    BottlesConfig::instance()->watchBottle(m_bottle, this, [this, programs](const BusResult& result) {
        const auto look = [path = BottleRecord::path(result.object()), programs] {
            return ExecutableList::of(path, programs);
        };
        inBackground(this, look, [this](const QVector<Executable>& found) { fill(found); });
    });
}

void ChooseExecutableDialog::fill(const QVector<Executable>& executables) {
    m_executables = executables;
    m_model->setHorizontalHeaderLabels({tr("Name"), tr("Location")});
    m_list->header()->resizeSection(Name, NameWidth);
    int first = -1;
    for (const Executable& found : executables) {
        if (!found.isEntered && first < 0)
            first = m_model->rowCount();
        QStandardItem* name = makeItem(found.name, found.isEntered);
        if (m_takesSeveral)
            name->setIcon(iconOf(found));
        QStandardItem* location = makeItem(found.path, found.isEntered);
        if (!found.place.isEmpty())
            location->setText(found.place);
        m_model->appendRow({name, location});
    }
    if (first < 0) {
        m_pages->setCurrentWidget(m_nothing);
        return;
    }
    m_list->setCurrentIndex(m_model->index(first, Name));
    m_pages->setCurrentWidget(m_list);
    m_list->setFocus();
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { onItemClicked(m_list->currentIndex()); });
    onItemClicked(m_list->currentIndex());
    readNames(0);
}

void ChooseExecutableDialog::readNames(int row) {
    while (row < m_executables.size() && m_executables[row].isNamed)
        ++row;
    if (row == m_executables.size() || ++m_readNames > MostReadNames)
        return;
    const auto read = [file = m_executables[row].file] { return ExecutableList::nameInVersionBlock(file); };
    const auto take = [this, row](const QString& name) {
        if (!name.isEmpty())
            setName(row, name);
        readNames(row + 1);
    };
    inBackground(this, read, take, m_thread.pool());
}

void ChooseExecutableDialog::setName(int row, const QString& name) {
    m_executables[row].name = name;
    m_model->item(row, Name)->setText(name);
    if (!m_executables[row].isEntered)
        m_model->item(row, Name)->setToolTip(plainToolTip(name));
}

const Executable* ChooseExecutableDialog::chosen() const {
    const int row = m_list->currentIndex().row();
    const bool canBeAdded = row >= 0 && row < m_executables.size() && !m_executables[row].isEntered;
    return canBeAdded ? &m_executables[row] : nullptr;
}

QVector<int> ChooseExecutableDialog::chosenRows() const {
    QVector<int> rows;
    for (const QModelIndex& index : m_list->selectionModel()->selectedRows())
        rows += index.row();
    std::sort(rows.begin(), rows.end());
    return rows;
}

void ChooseExecutableDialog::onItemClicked(const QModelIndex&) {
    button(m_add)->setEnabled(m_takesSeveral ? !chosenRows().isEmpty() : chosen() != nullptr);
}

void ChooseExecutableDialog::showFailure(const QString& errorText) {
    setMessage(errorText);
    adjustSize();
    m_pages->setEnabled(true);
    onItemClicked(m_list->currentIndex());
}

void ChooseExecutableDialog::onOkBtnClicked() {
    if (m_takesSeveral) {
        QVector<QJsonObject> records;
        for (const int row : chosenRows())
            records += ExecutableList::entryOf(m_executables[row]);
        m_pages->setEnabled(false);
        button(m_add)->setEnabled(false);
        Q_EMIT programsChosen(records);
        return;
    }
    if (const Executable* executable = chosen())
        Q_EMIT programChosen(ExecutableList::entryOf(*executable));
}
