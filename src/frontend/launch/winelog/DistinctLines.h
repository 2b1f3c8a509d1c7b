#pragma once

#include <QString>
#include <QStringList>
#include <vector>

/// Lists each line once, in the order of their first appearance, and stays quick for as many lines as a log
/// has. Empty lines are not listed.
class DistinctLines {
public:
    void add(const QString& line, QStringList* list);
    void clear();

private:
    struct Slot {
        size_t hash = 0;  ///< in a free slot
        QString line;
    };

    Slot* find(const QString& line, size_t hash);

    std::vector<Slot> m_slots;  ///< a power of two of them, at most half in use
    size_t m_count = 0;
};
