#include "backend/PendingWork.h"

#include <QPointer>

PendingWork::Hold PendingWork::hold() {
    ++m_holds;
    // Objects that live as long as the process may release their holds after this one is gone.
    return {static_cast<void*>(this), [work = QPointer<PendingWork>(this)](void*) {
                if (work && --work->m_holds == 0)
                    Q_EMIT work->done();
            }};
}
