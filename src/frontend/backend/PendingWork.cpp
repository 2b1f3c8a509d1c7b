#include "backend/PendingWork.h"

#include <QPointer>

PendingWork::Hold PendingWork::hold() {
    return hold(&PendingWork::m_holds);
}

PendingWork::Hold PendingWork::holdForTransfer() {
    return hold(&PendingWork::m_transfers);
}

PendingWork::Hold PendingWork::hold(int PendingWork::*count) {
    ++(this->*count);
    // Objects that live as long as the process may release their holds after this one is gone.
    return {static_cast<void*>(this), [count, work = QPointer<PendingWork>(this)](void*) {
                if (work && --(work->*count) == 0)
                    Q_EMIT work->done();
            }};
}
