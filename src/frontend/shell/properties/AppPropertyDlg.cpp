#include "shell/properties/AppPropertyDlg.h"

#include <QAccessible>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QStandardPaths>

#include "fenk/controls/Card.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "shell/properties/AppEntryIconEditor.h"
#include "shell/properties/NameEditor.h"
#include "shell/properties/PathLink.h"
#include "shell/properties/ProgramDetails.h"
#include "widgets/FileChoice.h"

using namespace Fenk;

namespace {

constexpr int DialogWidth = 480;

QWidget* row(const QString& title, QWidget* value, int height = Tokens::RowHeight, int overhang = 0) {
    auto* label = new Label(title, Label::Secondary);
    label->setBuddy(value);
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(Tokens::Space16, Tokens::Space4, Tokens::Space16 - overhang, Tokens::Space4);
    layout->setSpacing(Tokens::Space24);
    layout->addWidget(label);
    layout->addWidget(value, 1);
    row->setFixedHeight(height);
    return row;
}

Label* text(const QString& name) {
    auto* label = new Label(Label::Body);
    label->setObjectName(name);
    label->setElided(true);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

}  // namespace

AppPropertyDlg::AppPropertyDlg(const Program& known, QWidget* parent)
    : Dialog(parent),
      m_details(new ProgramDetails(known)),
      m_icon(new AppEntryIconEditor),
      m_name(new NameEditor),
      m_size(text("property_size")),
      m_time(text("property_time")),
      m_path(new PathLink),
      m_error(new Label(Label::Small)) {
    setObjectName("app_property_dialog");
    setTitle(tr("Edit Details"));
    setFixedWidth(DialogWidth);
    m_icon->setObjectName("property_icon");
    m_path->setObjectName("property_path");
    m_error->setObjectName("property_error");
    m_error->setTextRole(Theme::Danger);
    m_error->setWordWrap(true);
    m_error->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_error->hide();

    auto* head = new QWidget;
    auto* middle = new QHBoxLayout(head);
    middle->setContentsMargins(0, Tokens::Space4, 0, Tokens::Space8);
    middle->addWidget(m_icon, 0, Qt::AlignCenter);
    addContent(head);
    addContent(makeRows());
    addContent(m_error);

    connect(m_icon, &AppEntryIconEditor::clicked, this, &AppPropertyDlg::chooseIcon);
    connect(m_name, &NameEditor::renamed, m_details, [this](const QString& name) {
        showError({});
        m_details->rename(name);
    });
    connect(m_path, &PathLink::clicked, m_details, [this] {
        showError({});
        m_details->openFolder();
    });
    connect(m_details, &ProgramDetails::changed, this, &AppPropertyDlg::showDetails);
    connect(m_details, &ProgramDetails::failed, this, &AppPropertyDlg::showError);
    showDetails();
    m_details->load();
}

AppPropertyDlg::~AppPropertyDlg() {
    m_name->commit();
    m_details->disconnect(this);
    m_details->deleteWhenSaved();
}

void AppPropertyDlg::openFor(const Program& known, QWidget* over) {
    auto* dialog = new AppPropertyDlg(known, over);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void AppPropertyDlg::openForRename(const Program& known, QWidget* over) {
    auto* dialog = new AppPropertyDlg(known, over);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->m_isForRename = true;
    connect(dialog->m_name, &NameEditor::edited, dialog, &QDialog::reject);
    dialog->open();
}

QWidget* AppPropertyDlg::makeRows() {
    auto* card = new Card;
    card->addRow(row(tr("App Name"), m_name, Tokens::RowHeight + Tokens::Space8, NameEditor::PenOverhang));
    card->addRow(row(tr("File sizes"), m_size));
    card->addRow(row(tr("install time"), m_time));
    card->addRow(row(tr("File Paths"), m_path));
    return card;
}

void AppPropertyDlg::showDetails() {
    const auto known = [](const QString& text) { return text.isEmpty() ? tr("Unknown") : text; };
    const bool wasEditable = m_icon->isEnabled();
    m_icon->setFile(m_details->icon());
    m_icon->setEnabled(m_details->isEditable());
    m_name->setName(m_details->name());
    m_name->setEditable(m_details->isEditable());
    m_size->setText(known(m_details->size()));
    m_time->setText(known(m_details->installTime()));
    m_path->setPath(m_details->path());
    if (!m_details->isEditable() || wasEditable || m_path->hasFocus())
        return;
    m_name->setFocus();
    if (m_isForRename)
        m_name->beginEditing();
}

void AppPropertyDlg::showError(const QString& errorText) {
    m_error->setText(errorText);
    m_error->setVisible(!errorText.isEmpty());
    // The error is the lowest part, so that the others keep their places.
    layout()->activate();
    resize(width(), layout()->totalHeightForWidth(width()));
    if (errorText.isEmpty())
        return;
    QAccessibleEvent event(m_error, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void AppPropertyDlg::chooseIcon() {
    showError({});
    const QFileInfo present(m_details->icon());
    const QFileInfo pictures(QStandardPaths::writableLocation(QStandardPaths::PicturesLocation));
    QFileDialog* dialog =
        FileChoice::make(FileChoice::Kind::Icon, this, tr("Open Application Icon"),
                         pictures.isDir() ? pictures.filePath() : QDir::homePath(),
                         tr("Icons Files") + " (*.png *.PNG *.jpg *.JPG *.jpeg *.JPEG *.svg *.ico)");
    dialog->setObjectName("property_icon_dialog");
    if (present.isAbsolute() && present.dir().exists())
        dialog->setDirectory(present.path());
    connect(dialog, &QFileDialog::fileSelected, m_details, &ProgramDetails::useIcon);
    dialog->open();
}

void AppPropertyDlg::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F2)
        m_name->beginEditing();
    else
        Dialog::keyPressEvent(event);
}

void AppPropertyDlg::done(int index) {
    m_name->commit();
    Dialog::done(index);
}
