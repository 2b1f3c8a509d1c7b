#include "shell/adding/FileStateRow.h"

#include <QAccessible>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>

#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "shell/adding/AddingTexts.h"
#include "shell/requests/AddInputs.h"
#include "widgets/WidgetImages.h"

using namespace Fenk;

FileStateRow::FileStateRow(QWidget* parent)
    : QWidget(parent),
      m_reading(new AddReading(this)),
      m_name(new Label(Label::Strong)),
      m_spinner(new Spinner),
      m_icon(new QLabel),
      m_state(new Label(Label::Body)),
      m_reason(new Label(Label::Small)),
      m_cancel(new QPushButton(tr("Cancel"))) {
    setObjectName("file_state_row");
    m_name->setObjectName("file_name");
    m_name->setAlignment(Qt::AlignCenter);
    m_name->setElided(true);
    m_spinner->setFixedSize(Tokens::IconSmall, Tokens::IconSmall);
    m_state->setObjectName("file_state");
    m_reason->setObjectName("file_reason");
    m_reason->setAlignment(Qt::AlignCenter);
    m_reason->setWordWrap(true);
    m_cancel->setAccessibleName("cancel_check_btn");
    m_cancel->setAccessibleDescription(m_cancel->text());
    m_cancel->setAutoDefault(false);
    setButtonKind(m_cancel, ButtonKind::Quiet);
    m_cancel->hide();
    auto* line = new QHBoxLayout;
    line->setSpacing(Tokens::Space8);
    line->addStretch();
    line->addWidget(m_spinner);
    line->addWidget(m_icon);
    line->addWidget(m_state);
    line->addWidget(m_cancel);
    line->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addWidget(m_name);
    layout->addLayout(line);
    layout->addWidget(m_reason);
    connect(m_reading, &AddReading::done, this, &FileStateRow::show);
    connect(m_reading, &AddReading::slow, m_cancel, &QWidget::show);
    connect(m_cancel, &QPushButton::clicked, this, &FileStateRow::clear);
    hide();
}

void FileStateRow::check(const QStringList& inputs) {
    m_request = {};
    const QString first = inputs.value(0);
    showName(inputs.size() == 1 && AddInputs::isPath(first) ? QFileInfo(first).fileName() : QString(), first);
    m_spinner->startDelayed();
    m_reading->start(inputs);
    showState(AddingTexts::checking(), Theme::Secondary, {});
}

void FileStateRow::show(const AddRequest& request) {
    m_reading->cancel();
    m_request = request;
    m_spinner->stop();
    m_cancel->hide();
    showName(request.shown(), request.items.size() == 1 ? request.items.first().path : QString());
    if (isGood())
        showState(AddingTexts::isValid(), Theme::Success, QIcon(widgetImage("ok.svg")));
    else
        showState(AddingTexts::isInvalid(), Theme::Danger, warningIcon());
    QAccessibleEvent event(m_state, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void FileStateRow::clear() {
    m_reading->cancel();
    m_request = {};
    m_spinner->stop();
    m_cancel->hide();
    hide();
    Q_EMIT changed();
}

void FileStateRow::showName(const QString& name, const QString& path) {
    m_name->setText(name);
    m_name->setVisible(!name.isEmpty());
    m_name->setToolTip(path.isEmpty() ? QString() : plainToolTip(path));
}

void FileStateRow::showState(const QString& text, Theme::Role role, const QIcon& icon) {
    m_icon->setPixmap(icon.pixmap(Tokens::IconSmall, Tokens::IconSmall));
    m_icon->setVisible(!icon.isNull());
    m_state->setText(text);
    m_state->setTextRole(role);
    m_reason->setText(m_request.errorText);
    m_reason->setVisible(!m_request.errorText.isEmpty());
    setVisible(true);
    Q_EMIT changed();
}
