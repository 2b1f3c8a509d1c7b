#include "shell/properties/ProgramSaver.h"

#include "shell/library/InBackground.h"

using BottleUtils::Change;

void ProgramSaver::save(const ProgramRef& ref, const ProgramFace& face) {
    m_waiting[ref].enqueue(face);
    if (m_waiting[ref].size() == 1)
        saveNext(ref);
}

void ProgramSaver::saveNext(const ProgramRef& ref) {
    const ProgramFace face = m_waiting[ref].head();
    changingService(
        this, [ref, face] { return BottleUtils::setNameAndIcon(ref.bottle, ref.uuid, face.name, face.icon); },
        [this, ref, face](Change change) {
            QQueue<ProgramFace>& waiting = m_waiting[ref];
            waiting.dequeue();
            const bool last = waiting.isEmpty();
            if (last)
                m_waiting.remove(ref);
            else
                saveNext(ref);
            Q_EMIT saved(ref, face, change, last);
        });
}
