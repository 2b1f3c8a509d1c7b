#pragma once

#include <QString>
#include <QStringList>

/// What is known of a program in a folder of programs.
struct ProgramFacts {
    QString fileName;
    QString folderName;   ///< of the folder as a whole
    QStringList names{};  ///< product and description of its version block
    int depth = 0;        ///< folders between that folder and the program
    qint64 bytes = 0;
    bool isGraphical = true;
    bool hasIcon = false;
    bool runsHere = true;  ///< by its headers, on this machine
    bool is32BitOnly = false;
};

namespace ProgramLikelihood {

/// How likely it is the one that a user wants to start; only the order of the numbers counts. Helpers come
/// last, before what does not run here.
int of(const ProgramFacts& facts);

}  // namespace ProgramLikelihood
