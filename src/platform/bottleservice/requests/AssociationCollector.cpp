#include "bottleservice/requests/AssociationCollector.h"

#include <QElapsedTimer>
#include <QTimer>

#include "bottleservice/bottles/Associations.h"
#include "bottleservice/bottles/ProgramIcon.h"
#include "bottleservice/bottles/WindowsPath.h"
#include "bottleservice/files/Background.h"

namespace {

constexpr int RegistryWrittenMs = 35000;  // Wine writes its registry every half minute
constexpr int MaximumIconsMs = 60000;

QJsonObject read(const BottleStore& store, const QString& bottle, const QString& script,
                 const std::atomic_bool& cancelled) {
    const QString path = store.pathOf(bottle);
    QJsonObject found;
    if (store.check(bottle).isEmpty())
        found = Associations::collect(Associations::classesOf(path));
    QElapsedTimer elapsed;
    elapsed.start();
    for (auto it = found.begin(); it != found.end() && !cancelled; ++it) {
        QJsonObject entry = it.value().toObject();
        const QString program = entry["executable"].toString();
        const QString source = entry["icon"].toString().section(',', 0, 0).remove('"');
        const QString id = ProgramIcon::idFor(source + program);
        QString icon = ProgramIcon::existing(path, id);
        if (icon.isEmpty() && elapsed.elapsed() < MaximumIconsMs)
            icon = ProgramIcon::extract(
                script, path, id, {WindowsPath::toUnix(path, source), WindowsPath::toUnix(path, program)},
                cancelled);
        entry["icon"] = icon;
        it.value() = entry;
    }
    return found;
}

}  // namespace

AssociationCollector::AssociationCollector(const BottleStore& store, const QString& iconScript,
                                           QObject* parent)
    : QObject(parent), m_store(store), m_iconScript(iconScript) {
    m_worker.setMaxThreadCount(1);
}

AssociationCollector::~AssociationCollector() {
    m_cancelled = true;
    m_worker.waitForDone();
}

void AssociationCollector::collect(const QString& bottle) {
    collectNow(bottle);
    if (m_waiting.contains(bottle))
        return;
    m_waiting.insert(bottle);
    QTimer::singleShot(RegistryWrittenMs, this, [this, bottle] {
        m_waiting.remove(bottle);
        collectNow(bottle);
    });
}

void AssociationCollector::collectNow(const QString& bottle) {
    Background::run(
        &m_worker, this, [this, bottle] { return read(m_store, bottle, m_iconScript, m_cancelled); },
        [this, bottle](const QJsonObject& associations) { Q_EMIT collected(bottle, associations); });
}
