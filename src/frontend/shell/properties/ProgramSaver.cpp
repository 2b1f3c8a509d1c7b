#include "shell/properties/ProgramSaver.h"

#include "backend/InBackground.h"

using BottleUtils::Change;

int ProgramSaver::save(const ProgramRef& ref, const NameAndIcon& values) {
    m_queues[ref].enqueue({++m_saves, values});
    if (m_queues[ref].size() == 1)
        saveNext(ref);
    return m_saves;
}

std::optional<NameAndIcon> ProgramSaver::pending(const ProgramRef& ref) const {
    const auto waiting = m_queues.constFind(ref);
    return waiting == m_queues.constEnd() ? std::nullopt : std::optional(waiting->last().values);
}

void ProgramSaver::saveNext(const ProgramRef& ref) {
    const NameAndIcon values = m_queues[ref].head().values;
    changeServiceAsync(
        this,
        [ref, values] { return BottleUtils::setNameAndIcon(ref.bottle, ref.uuid, values.name, values.icon); },
        [this, ref](Change change) {
            Save save = m_queues[ref].dequeue();
            save.change = change;
            if (m_queues[ref].isEmpty())
                m_queues.remove(ref);
            else
                saveNext(ref);
            Q_EMIT saved(ref, save);
        });
}
