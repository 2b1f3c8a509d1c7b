#include "shell/requests/AddReading.h"

#include <QDebug>

#include "backend/InBackground.h"
#include "shell/requests/AddInputs.h"

namespace {
constexpr int MomentMs = 500;
}

AddReading::AddReading(QObject* parent) : QObject(parent) {
    m_moment.setSingleShot(true);
    m_moment.setInterval(MomentMs);
    connect(&m_moment, &QTimer::timeout, this, &AddReading::slow);
}

AddReading::~AddReading() {
    cancel();
}

void AddReading::start(const QStringList& inputs) {
    cancel();
    for (const QString& input : inputs)
        qInfo().noquote() << "adding" << AddInputs::logged(input);
    m_thread = std::make_unique<OwnThread>();
    m_isCancelled = std::make_shared<std::atomic_bool>(false);
    const auto read = [inputs, isCancelled = m_isCancelled] {
        QVector<AddItem> items;
        for (const QString& input : inputs) {
            if (!*isCancelled)
                items += AddItem::read(input, *isCancelled);
        }
        return AddRequest::of(items);
    };
    const auto take = [this, isCancelled = m_isCancelled](const AddRequest& request) {
        if (*isCancelled)
            return;
        cancel();
        Q_EMIT done(request);
    };
    m_moment.start();
    inBackground(this, read, take, m_thread->pool());
}

void AddReading::cancel() {
    m_moment.stop();
    if (m_isCancelled)
        *m_isCancelled = true;
    m_thread.reset();
}
