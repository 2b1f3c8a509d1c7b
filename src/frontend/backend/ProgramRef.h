#pragma once

#include <QHash>
#include <QString>

/// Identifies a program. The id alone does not: a copied bottle has the ids of the original.
struct ProgramRef {
    QString bottle;
    QString uuid;

    bool operator==(const ProgramRef& other) const { return uuid == other.uuid && bottle == other.bottle; }
    bool operator!=(const ProgramRef& other) const { return !(*this == other); }
};

inline uint qHash(const ProgramRef& ref, uint seed = 0) {
    return qHash(ref.uuid, seed) ^ qHash(ref.bottle, seed);
}
