#include "shell/properties/ProgramSaver.h"

#include "backend/InBackground.h"

using BottleUtils::Change;

int ProgramSaver::save(const ProgramRef& ref, const ProgramFace& face) {
    m_waiting[ref].enqueue({++m_saves, face});
    if (m_waiting[ref].size() == 1)
        saveNext(ref);
    return m_saves;
}

std::optional<ProgramFace> ProgramSaver::pending(const ProgramRef& ref) const {
    const auto waiting = m_waiting.constFind(ref);
    return waiting == m_waiting.constEnd() ? std::nullopt : std::optional(waiting->last().face);
}

void ProgramSaver::saveNext(const ProgramRef& ref) {
    const ProgramFace face = m_waiting[ref].head().face;
    changeServiceAsync(
        this, [ref, face] { return BottleUtils::setNameAndIcon(ref.bottle, ref.uuid, face.name, face.icon); },
        [this, ref](Change change) {
            Save save = m_waiting[ref].dequeue();
            save.change = change;
            if (m_waiting[ref].isEmpty())
                m_waiting.remove(ref);
            else
                saveNext(ref);
            Q_EMIT saved(ref, save);
        });
}
