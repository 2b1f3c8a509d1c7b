#include "shell/configuration/page/ComponentQuestion.h"

#include <QCoreApplication>

#include "launch/banner/RunningProgramsQuestion.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/rules/SettingTable.h"

void askToClosePrograms(BottleSettings* settings, Setting component, const QStringList& programs,
                        const QString& appName, QWidget* window) {
    const QString name = QString("%1_programs_question").arg(SettingTable::componentKind(component));
    delete window->findChild<RunningProgramsQuestion*>(name);
    auto* question = new RunningProgramsQuestion(appName, programs, window);
    question->setMessage(
        QCoreApplication::translate(
            "BottlesConfigView",
            "%1 can only be changed while nothing runs in the container. These programs have to "
            "be closed first: what has not been saved in them will be lost.")
            .arg(SettingTable::label(component)));
    question->setObjectName(name);
    QObject::connect(settings, &BottleSettings::changed, question, [settings, component, question] {
        if (settings->setup(component).phase() != ComponentSetup::Phase::Asked)
            question->deleteLater();
    });
    QObject::connect(
        question, &RunningProgramsQuestion::answered, settings,
        [settings, component](bool close) { settings->answerProgramsRunning(component, close); });
    question->open();
}
