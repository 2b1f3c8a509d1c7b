#include "backend/PendingWork.h"

#include <QPointer>

PendingWork::Hold PendingWork::hold() {
    ++m_holds;
    // Holds of other objects that live as long as the process may go later.
    return {static_cast<void*>(this), [work = QPointer<PendingWork>(this)](void*) {
                if (work && --work->m_holds == 0)
                    Q_EMIT work->done();
            }};
}
