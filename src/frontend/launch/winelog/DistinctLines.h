#pragma once

#include <QString>
#include <QStringList>
#include <vector>

/// Appends each distinct non-empty line once to a list, in the order of first appearance, in constant time
/// per line.
class DistinctLines {
public:
    void add(const QString& line, QStringList* list);
    void clear();

private:
    struct Slot {
        size_t hash = 0;  ///< marks a free slot
        QString line;
    };

    Slot* find(const QString& line, size_t hash);

    std::vector<Slot> m_slots;  ///< the size is a power of two; at most half of them are used
    size_t m_count = 0;
};
