#include "launch/winelog/DistinctLines.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace {

constexpr size_t FirstSlots = 256;

/// Never returns 0, which marks a free slot.
size_t hashOf(const QString& line) {
    constexpr size_t highest = ~(~size_t(0) >> 1);
    const std::u16string_view text(reinterpret_cast<const char16_t*>(line.utf16()), size_t(line.size()));
    return std::hash<std::u16string_view>()(text) | highest;
}

}  // namespace

void DistinctLines::clear() {
    m_slots.clear();
    m_count = 0;
}

/// Returns the slot of the line, or the free slot to store it in.
DistinctLines::Slot* DistinctLines::find(const QString& line, size_t hash) {
    const size_t mask = m_slots.size() - 1;
    for (size_t at = hash & mask;; at = (at + 1) & mask) {
        Slot& slot = m_slots[at];
        if (slot.hash == 0 || (slot.hash == hash && slot.line == line))
            return &slot;
    }
}

void DistinctLines::add(const QString& line, QStringList* list) {
    if (line.isEmpty())
        return;
    if (m_count * 2 >= m_slots.size()) {
        std::vector<Slot> old(std::max(FirstSlots, m_slots.size() * 2));
        old.swap(m_slots);
        for (Slot& slot : old) {
            if (slot.hash != 0)
                *find(slot.line, slot.hash) = std::move(slot);
        }
    }
    const size_t hash = hashOf(line);
    Slot* slot = find(line, hash);
    if (slot->hash != 0)
        return;
    *slot = {hash, line};
    ++m_count;
    list->append(line);
}
