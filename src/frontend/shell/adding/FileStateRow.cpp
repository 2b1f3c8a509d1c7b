#include "shell/adding/FileStateRow.h"

#include <QAccessible>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>

#include "backend/InBackground.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Tokens.h"
#include "shell/adding/AddingTexts.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;

FileStateRow::FileStateRow(QWidget* parent)
    : QWidget(parent),
      m_name(new Label(Label::Strong)),
      m_spinner(new Spinner),
      m_icon(new QLabel),
      m_state(new Label(Label::Body)),
      m_reason(new Label(Label::Small)) {
    setObjectName("file_state_row");
    m_name->setObjectName("file_name");
    m_name->setAlignment(Qt::AlignCenter);
    m_name->setElided(true);
    m_spinner->setFixedSize(Tokens::IconSmall, Tokens::IconSmall);
    m_state->setObjectName("file_state");
    m_reason->setObjectName("file_reason");
    m_reason->setAlignment(Qt::AlignCenter);
    m_reason->setWordWrap(true);
    auto* line = new QHBoxLayout;
    line->setSpacing(Tokens::Space8);
    line->addStretch();
    line->addWidget(m_spinner);
    line->addWidget(m_icon);
    line->addWidget(m_state);
    line->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addWidget(m_name);
    layout->addLayout(line);
    layout->addWidget(m_reason);
    hide();
}

void FileStateRow::check(const QString& path) {
    m_file = {};
    m_file.path = path;
    m_spinner->startDelayed();
    showState(AddingTexts::checking(), Theme::Secondary, {});
    inBackground(
        this, [path] { return AddedFile::check(path); },
        [this, check = ++m_checks](const AddedFile& file) {
            if (check == m_checks)
                show(file);
        });
}

void FileStateRow::show(const AddedFile& file) {
    ++m_checks;
    m_file = file;
    m_spinner->stop();
    if (isGood())
        showState(AddingTexts::isValid(), Theme::Success, QIcon(widgetImage("ok.svg")));
    else
        showState(AddingTexts::isInvalid(), Theme::Danger, warningIcon());
    QAccessibleEvent event(m_state, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void FileStateRow::refuse(const QString& reason) {
    AddedFile file;
    file.reason = reason;
    show(file);
}

void FileStateRow::clear() {
    ++m_checks;
    m_file = {};
    hide();
    Q_EMIT changed();
}

void FileStateRow::showState(const QString& text, Theme::Role role, const QIcon& icon) {
    const QString name = QFileInfo(m_file.path).fileName();
    m_name->setText(name);
    m_name->setVisible(!name.isEmpty());
    m_name->setToolTip(name.isEmpty() ? QString() : plainToolTip(m_file.path));
    m_icon->setPixmap(icon.pixmap(Tokens::IconSmall, Tokens::IconSmall));
    m_icon->setVisible(!icon.isNull());
    m_state->setText(text);
    m_state->setTextRole(role);
    m_reason->setText(m_file.reason);
    m_reason->setVisible(!m_file.reason.isEmpty());
    setVisible(true);
    Q_EMIT changed();
}
