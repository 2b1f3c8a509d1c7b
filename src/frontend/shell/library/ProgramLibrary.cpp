#include "shell/library/ProgramLibrary.h"

#include <QDBusServiceWatcher>
#include <QDebug>
#include <QSignalBlocker>
#include <algorithm>

#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"
#include "backend/SessionBus.h"

namespace {

constexpr int RetryMs = 500;
constexpr int MaximumRetries = 5;

}  // namespace

ProgramLibrary::ProgramLibrary(QObject* parent) : QObject(parent) {
    m_retry.setSingleShot(true);
    m_retry.setInterval(RetryMs);
    connect(&m_retry, &QTimer::timeout, this, &ProgramLibrary::load);
    BottlesConfig* service = BottlesConfig::instance();
    connect(service, &BottlesConfig::bottles_deleted, this, &ProgramLibrary::bottleRemoved);
    auto* watcher = new QDBusServiceWatcher(service->service(), service->connection(),
                                            QDBusServiceWatcher::WatchForRegistration, this);
    // The bottles may have changed while there was no service.
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        if (!m_isLoading && !m_retry.isActive())
            load();
    });
}

ProgramLibrary::~ProgramLibrary() = default;

void ProgramLibrary::load() {
    if (m_isLoading)
        return;
    m_retry.stop();
    m_isLoading = true;
    m_changesWhileLoading.clear();
    if (m_state == State::Failed)
        setState(State::Loading);
    BottlesConfig::instance()->watchAllPrograms(this, [this](const BusResult& result) { onReply(result); });
}

void ProgramLibrary::onReply(const BusResult& result) {
    if (result.ok) {
        m_retries = 0;
        inBackground(
            this, [text = result.text] { return parsePrograms(text); },
            [this](const QVector<ProgramPtr>& programs) { setList(programs); });
        return;
    }
    m_isLoading = false;
    qWarning("call listAllPrograms failed");
    qWarning("---------------------------------");
    qWarning().noquote() << result.errorMessage;
    if (result.serviceGone && SessionBus::isConnected() && m_retries < MaximumRetries) {
        ++m_retries;
        m_retry.start();
        return;
    }
    m_retries = 0;
    m_programs.clear();
    m_indexValid = false;
    setState(State::Failed);
}

void ProgramLibrary::setList(const QVector<ProgramPtr>& programs) {
    m_programs = programs;
    m_isLoading = false;
    const auto changes = m_changesWhileLoading;
    m_changesWhileLoading.clear();
    m_indexValid = false;
    {
        const QSignalBlocker quiet(this);
        for (const auto& change : changes)
            change();
    }
    m_isIndexing = m_index.names.isEmpty();
    setState(State::Ready);
    Q_EMIT listChanged();
    // Lets the window paint first.
    QTimer::singleShot(0, this, &ProgramLibrary::buildIndex);
}

void ProgramLibrary::setState(State state) {
    if (m_state == state)
        return;
    m_state = state;
    Q_EMIT stateChanged();
}

ProgramLibrary::Index ProgramLibrary::makeIndex(const QVector<ProgramPtr>& programs,
                                                QHash<QString, NameSearch::Name> names) {
    Index index;
    index.entries.reserve(programs.size());
    for (const ProgramPtr& program : programs) {
        auto name = names.find(program->name);
        if (name == names.end())
            name = names.insert(program->name, NameSearch::Name(program->name));
        index.entries.append({program, *name});
    }
    std::stable_sort(index.entries.begin(), index.entries.end(),
                     [](const Entry& a, const Entry& b) { return a.program->name < b.program->name; });
    index.names = names;
    return index;
}

void ProgramLibrary::buildIndex() {
    const QVector<ProgramPtr> programs = m_programs;
    inBackground(
        this, [programs, names = m_index.names] { return makeIndex(programs, names); },
        [this, programs](const Index& index) {
            // The names stay valid even if the list has changed meanwhile.
            m_index = index;
            m_indexValid = programs.constData() == m_programs.constData();
            m_isIndexing = false;
            Q_EMIT searchable();
        });
}

QVector<ProgramPtr> ProgramLibrary::search(const QString& keyword) {
    if (!m_indexValid) {
        m_index = makeIndex(m_programs, m_index.names);
        m_indexValid = true;
    }
    const NameSearch::Keyword wanted(keyword);
    QVector<ProgramPtr> found;
    for (const Entry& entry : qAsConst(m_index.entries)) {
        if (wanted.matches(entry.name))
            found << entry.program;
    }
    return found;
}

int ProgramLibrary::rowOf(const ProgramRef& ref) const {
    const auto found = std::find_if(m_programs.begin(), m_programs.end(),
                                    [&ref](const ProgramPtr& program) { return program->ref == ref; });
    return found == m_programs.end() ? -1 : int(found - m_programs.begin());
}

ProgramPtr ProgramLibrary::find(const ProgramRef& ref) const {
    return m_programs.value(rowOf(ref));
}

void ProgramLibrary::apply(const std::function<void()>& change) {
    if (m_isLoading)
        m_changesWhileLoading << change;
    if (m_state == State::Ready)
        change();
}

void ProgramLibrary::changed() {
    m_indexValid = false;
    Q_EMIT listChanged();
}

void ProgramLibrary::insertOrUpdate(const ProgramRef& ref, const QJsonObject& record) {
    const int row = rowOf(ref);
    auto program =
        row < 0 ? QSharedPointer<Program>::create() : QSharedPointer<Program>::create(*m_programs[row]);
    const QString oldName = program->name;
    program->ref = ref;
    program->update(record);
    if (row >= 0 && program->name == oldName) {
        m_programs[row] = program;
        m_indexValid = false;
        Q_EMIT programChanged(program);
        return;
    }
    if (row >= 0)
        m_programs.remove(row);
    m_programs.insert(ProgramOrder::position(m_programs, *program), program);
    Q_EMIT programChanged(program);
    changed();
}

void ProgramLibrary::programAdded(const ProgramRef& ref, const QString& record) {
    const QJsonObject object = ProgramRecord::fromText(record);
    if (object.isEmpty() || ref.bottle.isEmpty() || ref.uuid.isEmpty() || ref.uuid.contains('/')) {
        qWarning() << "not a program for the library" << ref.bottle << ref.uuid;
        return;
    }
    apply([this, ref, object] { insertOrUpdate(ref, object); });
}

void ProgramLibrary::programUpdated(const ProgramRef& ref, const QString& record) {
    const QJsonObject object = ProgramRecord::fromText(record);
    apply([this, ref, object] {
        if (!object.isEmpty() && rowOf(ref) >= 0)
            insertOrUpdate(ref, object);
    });
}

void ProgramLibrary::programRemoved(const ProgramRef& ref) {
    apply([this, ref] {
        const int row = rowOf(ref);
        if (row < 0)
            return;
        m_programs.remove(row);
        changed();
    });
}

void ProgramLibrary::bottleRemoved(const QString& bottle) {
    apply([this, bottle] {
        const auto end =
            std::remove_if(m_programs.begin(), m_programs.end(),
                           [&bottle](const ProgramPtr& program) { return program->ref.bottle == bottle; });
        if (end == m_programs.end())
            return;
        m_programs.erase(end, m_programs.end());
        changed();
    });
}

void ProgramLibrary::setStars(const ProgramRef& ref, int stars) {
    apply([this, ref, stars] {
        if (rowOf(ref) >= 0)
            insertOrUpdate(ref, {{"stars", stars}});
    });
}
