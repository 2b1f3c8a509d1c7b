#include "shell/configuration/page/ComponentQuestion.h"

#include <QCoreApplication>

#include "launch/banner/RunningProgramsQuestion.h"
#include "shell/configuration/page/BottleSettings.h"
#include "shell/configuration/rules/SettingTable.h"

void askToClosePrograms(BottleSettings* settings, Setting component, const QStringList& programs,
                        const QString& appName, QWidget* window) {
    auto* question = new RunningProgramsQuestion(appName, programs, window);
    question->setMessage(
        QCoreApplication::translate(
            "BottlesConfigView",
            "%1 can only be changed while nothing runs in the container. These programs have to "
            "be closed first: what has not been saved in them will be lost.")
            .arg(SettingTable::label(component)));
    QObject::connect(
        question, &RunningProgramsQuestion::answered, settings,
        [settings, component](bool close) { settings->answerProgramsRunning(component, close); });
    question->open();
}
