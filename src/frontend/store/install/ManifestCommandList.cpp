#include "store/install/ManifestCommandList.h"

#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"

using namespace Fenk;

namespace {

constexpr int ListHeight = 88;

QString visible(const QString& text) {
    QString result;
    for (const QChar c : text)
        result += c.isPrint() && c.category() != QChar::Other_Format ? c : QChar(QChar::ReplacementCharacter);
    return result;
}

QString word(const QString& argument) {
    const bool needsQuotes = argument.isEmpty() || argument.contains(' ');
    return needsQuotes ? '"' + visible(argument) + '"' : visible(argument);
}

}  // namespace

QString ManifestCommandList::text(const ManifestCommand& command) {
    QStringList words{word(command.program)};
    for (const QString& argument : command.arguments)
        words += word(argument);
    const QString line = words.join(' ');
    return command.description.isEmpty() ? line : visible(command.description.simplified()) + "\n  " + line;
}

ManifestCommandList::ManifestCommandList(const QVector<ManifestCommand>& commands, QWidget* parent)
    : QWidget(parent), m_fold(new QPushButton), m_list(new QPlainTextEdit) {
    m_fold->setText(commands.size() == 1
                        ? tr("The setup runs a command in the container")
                        : tr("The setup runs %1 commands in the container").arg(commands.size()));
    m_fold->setAccessibleName("show_commands_btn");
    m_fold->setAccessibleDescription(m_fold->text());
    m_fold->setAutoDefault(false);
    m_fold->setCheckable(true);
    setButtonKind(m_fold, ButtonKind::Quiet);
    connect(m_fold, &QPushButton::toggled, this, &ManifestCommandList::unfold);

    QStringList lines;
    for (const ManifestCommand& command : commands)
        lines += text(command);
    m_list->setObjectName("manifest_commands");
    m_list->setAccessibleName(m_fold->text());
    m_list->setReadOnly(true);
    m_list->setUndoRedoEnabled(false);
    m_list->setTabChangesFocus(true);
    m_list->setFont(Theme::instance()->font(Theme::Fixed));
    m_list->setPlainText(lines.join('\n'));
    m_list->setFixedHeight(ListHeight);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space4);
    layout->addWidget(m_fold, 0, Qt::AlignLeft);
    layout->addWidget(m_list);
    unfold(false);
}

void ManifestCommandList::unfold(bool isUnfolded) {
    m_fold->setIcon(Theme::icon(isUnfolded ? "fenk-up" : "fenk-down"));
    m_list->setVisible(isUnfolded);
    Q_EMIT unfolded(isUnfolded);
}
