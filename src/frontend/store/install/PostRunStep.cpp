#include "store/install/PostRunStep.h"

#include <QJsonObject>

#include "backend/ProgramRecord.h"

PostRunStep postRunStep(const QJsonObject& programs, const QString& setupFile, bool isSetUp) {
    for (const QJsonValue& program : programs) {
        if (ProgramRecord::path(program.toObject()) == setupFile)
            return PostRunStep::AlreadyAdded;
    }
    if (!programs.isEmpty())
        return PostRunStep::Keep;
    return isSetUp ? PostRunStep::DeleteBottle : PostRunStep::AddFile;
}
