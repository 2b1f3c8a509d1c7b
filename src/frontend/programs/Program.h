#pragma once

#include <QJsonObject>
#include <QSharedPointer>
#include <QString>
#include <QVector>

#include "backend/ProgramRef.h"
#include "programs/NameSearch.h"

/// A stored program as the library shows it. All texts come from a bottle and are untrusted: escape them
/// before they become HTML, and never use them as a path without a check.
struct Program {
    ProgramRef ref;
    QString name;  ///< on one line, of bounded length, never empty
    QString icon;  ///< path of the icon's file, as the bottle says
    QString path;
    QString size;         ///< the service's text
    QString createdTime;  ///< the service's text
    int stars = 0;        ///< 0 to 5

    /// An empty text gives the path's last part, or else the id.
    void setName(const QString& text);
    /// Takes over the keys that the record has; the others keep their values.
    void update(const QJsonObject& record);
};

/// Immutable once shared: a change makes a new one.
using ProgramPtr = QSharedPointer<const Program>;

namespace ProgramOrder {

/// By name, in the order of the user's language and with "2" before "10".
void sort(QVector<ProgramPtr>* programs);
/// The index at which the program belongs in a sorted list.
int position(const QVector<ProgramPtr>& programs, const Program& program);

}  // namespace ProgramOrder

/// Parses the service's list of all programs and sorts it. Leaves out and logs entries without a usable
/// bottle or id, and duplicates. For any thread.
QVector<ProgramPtr> parsePrograms(const QString& text);
