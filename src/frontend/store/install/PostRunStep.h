#pragma once

class QJsonObject;
class QString;

/// What becomes of the bottle of an application when its set-up program has run.
enum class PostRunStep {
    AlreadyAdded,  ///< the set-up program is an entry of the bottle
    AddFile,       ///< it sets nothing up: it is the program itself
    DeleteBottle,  ///< nothing was installed
    Keep,          ///< it has entered its own programs
};

/// `programs` are the bottle's, by their ids.
PostRunStep postRunStep(const QJsonObject& programs, const QString& setupFile, bool isSetUp);
