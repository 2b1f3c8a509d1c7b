#include "launch/banner/RunningProgramsQuestion.h"

#include <QAbstractButton>
#include <QVBoxLayout>

#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"

namespace {

constexpr int MostLines = 5;

Fenk::Label* line(const QString& text, Fenk::Label::Kind kind) {
    auto* label = new Fenk::Label(text, kind);
    label->setAlignment(Qt::AlignCenter);
    label->setElided(true);
    return label;
}

}  // namespace

RunningProgramsQuestion::RunningProgramsQuestion(const QString& appName, const QStringList& programs,
                                                 QWidget* banner)
    : Dialog(banner) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowModality(Qt::WindowModal);
    setAccessibleName("running_programs_question");
    setFixedWidth(Fenk::Tokens::DialogMaxWidth - 2 * Fenk::Tokens::Space32);
    setTitle(tr("Programs Are Running"));
    setMessage(
        tr("The repair changes the container of %1, and these programs are running in it. They have to be "
           "closed first: what has not been saved in them will be lost.")
            .arg(appName));
    auto* list = new QWidget;
    auto* lines = new QVBoxLayout(list);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(Fenk::Tokens::Space4);
    for (const QString& program : programs.mid(0, MostLines))
        lines->addWidget(line(program, Fenk::Label::Strong));
    if (programs.size() > MostLines)
        lines->addWidget(line(tr("and %1 more").arg(programs.size() - MostLines), Fenk::Label::Small));
    addContent(list);
    addButton(tr("Cancel"), true);
    const int close = addButton(tr("Close them and continue"), false, ButtonWarning);
    button(0)->setAccessibleName("cancel_btn");
    button(close)->setAccessibleName("close_programs_btn");
    for (int i : {0, close})
        button(i)->setAccessibleDescription(button(i)->text());
    connect(this, &QDialog::finished, this, [this, close](int index) { Q_EMIT answered(index == close); });
}
