#include "packaging/contents/PackageContentsWidget.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLocale>
#include <QMap>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "backend/TextUtils.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "packaging/contents/PackageListing.h"

using namespace Fenk;
using State = PackageListing::State;

namespace {

constexpr int TreeHeight = 220;
constexpr int NoteLines = 3;
constexpr int NoteWidth = 452;

struct Reason {
    const char* word;
    const char* text;
};
/// The first is for words that are not known.
const Reason Reasons[] = {
    {"private", QT_TRANSLATE_NOOP("PackageContentsWidget", "Other private files")},
    {"credentials", QT_TRANSLATE_NOOP("PackageContentsWidget", "Passwords, keys and log-ins")},
    {"personal", QT_TRANSLATE_NOOP("PackageContentsWidget", "Personal folders and recent documents")},
    {"traces", QT_TRANSLATE_NOOP("PackageContentsWidget", "Logs, caches and temporary files")},
    {"other-user", QT_TRANSLATE_NOOP("PackageContentsWidget", "Profiles of other users")},
    {"registry", QT_TRANSLATE_NOOP("PackageContentsWidget", "Private values of the registry")},
    {"outside", QT_TRANSLATE_NOOP("PackageContentsWidget", "Links that lead out of the bottle")},
    {"special", QT_TRANSLATE_NOOP("PackageContentsWidget", "Pipes, sockets and devices")},
};

QString textOf(const QString& why) {
    for (const Reason& reason : Reasons) {
        if (why == QLatin1String(reason.word))
            return PackageContentsWidget::tr(reason.text);
    }
    return PackageContentsWidget::tr(Reasons[0].text);
}

QTreeWidgetItem* addRow(QTreeWidgetItem* parent, const QString& text, const QString& amount) {
    auto* item = new QTreeWidgetItem(parent, {text, amount});
    item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    item->setToolTip(0, plainToolTip(text));
    return item;
}

QString placeText(const QString& place) {
    return place.isEmpty() ? QString("C:\\") : QString(place).replace('/', '\\');
}

}  // namespace

PackageContentsWidget::PackageContentsWidget(QWidget* parent)
    : QWidget(parent),
      m_listing(new PackageListing(this)),
      m_size(new Label(Label::Strong)),
      m_note(new Label(Label::Small)),
      m_spinner(new Spinner),
      m_button(new QPushButton),
      m_tree(new QTreeWidget) {
    m_button->setObjectName("package_contents_btn");
    m_button->setAutoDefault(false);
    m_size->setObjectName("package_contents_size");
    m_note->setObjectName("package_contents_note");
    m_note->setElidedAfter(NoteLines);
    m_note->setMaximumWidth(NoteWidth);
    m_tree->setObjectName("package_contents_list");
    m_tree->setAccessibleName(tr("What goes along"));
    m_tree->setHeaderHidden(true);
    m_tree->setColumnCount(2);
    m_tree->setUniformRowHeights(true);
    m_tree->header()->setStretchLastSection(false);
    m_tree->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_tree->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_tree->setFixedHeight(TreeHeight);
    setTextAreaLook(m_tree);
    m_tree->hide();

    auto* head = new QHBoxLayout;
    head->setSpacing(Tokens::Space8);
    head->addWidget(m_size, 1);
    head->addWidget(m_spinner);
    head->addWidget(m_button);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Tokens::Space24, Tokens::Space12, Tokens::Space24, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addLayout(head);
    layout->addWidget(m_note);
    layout->addWidget(m_tree);
    connect(m_listing, &PackageListing::changed, this, [this] {
        if (m_listing->state() == State::Listed)
            fillTree();
        refresh();
    });
    connect(m_button, &QPushButton::clicked, this, &PackageContentsWidget::onClicked);
    refresh();
}

void PackageContentsWidget::onClicked() {
    if (m_listing->state() == State::Running) {
        m_listing->cancel();
    } else if (m_listing->state() == State::Listed) {
        m_isUnfolded = !m_isUnfolded;
        refresh();
    } else {
        m_listing->retry();
    }
}

void PackageContentsWidget::refresh() {
    const State state = m_listing->state();
    state == State::Running ? m_spinner->startDelayed() : m_spinner->stop();
    setVisible(state != State::Idle);
    if (state == State::Running)
        m_button->setText(tr("Cancel"));
    else if (state == State::Listed)
        m_button->setText(m_isUnfolded ? tr("Put away details") : tr("Show details"));
    else
        m_button->setText(tr("Retry"));

    m_note->setTextRole(state == State::Failed ? Theme::Danger : Theme::Secondary);
    if (state == State::Running && !m_listing->hasSummary()) {
        m_size->setText(tr("What goes along"));
        m_note->setText(tr("Listing the files…"));
    } else if (m_listing->hasSummary() && state != State::Cancelled) {
        const PackageSummary& summary = m_listing->summary();
        m_size->setText(tr("What goes along: %1").arg(TextUtils::readableSize(summary.all.bytes)));
        m_note->setText(
            tr("Before compression. Private entries that are left out: %1.").arg(summary.leftOutEntries()));
    } else {
        m_size->setText(tr("What goes along"));
        m_note->setText(state == State::Failed ? m_listing->errorText() : tr("The files were not listed"));
    }
    const bool isShown = m_isUnfolded && m_listing->hasSummary();
    if (isShown != !m_tree->isHidden())
        m_tree->setVisible(isShown);
    Q_EMIT resized();
}

void PackageContentsWidget::fillTree() {
    const PackageSummary& summary = m_listing->summary();
    m_tree->clear();
    QTreeWidgetItem* root = m_tree->invisibleRootItem();
    auto* along = addRow(root, tr("Included"), TextUtils::readableSize(summary.all.bytes));
    for (const PackageSummary::Part& folder : summary.folders)
        addRow(along, placeText(folder.place), TextUtils::readableSize(folder.bytes));
    if (summary.templates.files > 0)
        addRow(along, tr("Copies from runners and templates"),
               TextUtils::readableSize(summary.templates.bytes));
    if (summary.wineLinks > 0)
        addRow(root, tr("Files of Wine, which each machine has"), QLocale().toString(summary.wineLinks));
    auto* home = addRow(root, tr("Left out"), QLocale().toString(summary.leftOutEntries()));
    QMap<QString, QPair<QTreeWidgetItem*, qint64>> reasons;
    for (const PackageSummary::LeftOut& row : summary.leftOut) {
        auto& reason = reasons[textOf(row.why)];
        if (!reason.first)
            reason.first = addRow(home, textOf(row.why), {});
        reason.second += row.entries;
        reason.first->setText(1, QLocale().toString(reason.second));
        addRow(reason.first, placeText(row.place), QLocale().toString(row.entries));
    }
    along->setExpanded(true);
    home->setExpanded(true);
}
