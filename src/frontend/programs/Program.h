#pragma once

#include <QJsonObject>
#include <QSharedPointer>
#include <QString>
#include <QVector>

#include "backend/ProgramRef.h"
#include "programs/NameSearch.h"

/// A stored program as the library shows it. All of it comes from a bottle: text to show, nothing to trust.
struct Program {
    ProgramRef ref;
    QString name;  ///< on one line, of bounded length, never empty
    QString icon;  ///< what the bottle says is the icon's file
    QString path;
    QString size;         ///< text, as the service gives it
    QString createdTime;  ///< text, as the service gives it
    int stars = 0;        ///< 0 to 5

    /// Takes the name from the path's last part when there is none.
    void setName(const QString& text);
    /// Changes what the record of a program signal tells.
    void take(const QJsonObject& record);
};

/// Never changed once it is shared; a change is another one in its place.
using ProgramPtr = QSharedPointer<const Program>;

namespace ProgramOrder {

/// As a person looks for names: in the language's own order, "2" before "10".
void sort(QVector<ProgramPtr>* programs);
/// Where a program goes in a sorted list.
int position(const QVector<ProgramPtr>& programs, const Program& program);

}  // namespace ProgramOrder

/// The service's list of all programs, sorted. What can't be a program is left out and logged. For any
/// thread.
QVector<ProgramPtr> parsePrograms(const QString& text);
