#include "bottleservice/requests/OfflineRequests.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <algorithm>

#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/components/OfflineArchive.h"
#include "bottleservice/components/OfflineCheck.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/DependencyRequests.h"
#include "bottleservice/requests/RequestChecks.h"

using Fault = Answer::Fault;

namespace {

constexpr int MaximumArchives = 200;
const char UnfinishedExport[] = "/unfinished-export";

/// The lists of files that a client has named.
struct Lists {
    QMap<QString, OfflineList> good;  ///< by path
    QMap<QString, Reason> bad;        ///< by path
};

bool isArchivePath(const QString& text) {
    return text.startsWith('/') && !text.contains(QChar(0));
}

Lists listsOf(const QStringList& archives, const Sources& sources) {
    Lists lists;
    for (const QString& path : archives) {
        OfflineList list;
        Reason failure = OfflineArchive::readList(path, &list);
        if (failure.isEmpty())
            failure = OfflineCheck::conflict(list, sources, QFileInfo(path).fileName());
        if (failure.isEmpty())
            lists.good.insert(path, list);
        else
            lists.bad.insert(path, failure);
    }
    return lists;
}

QJsonObject toJson(const OfflineCheck::Verdict& verdict, const QMap<QString, Reason>& bad) {
    QJsonObject missing;
    for (auto it = verdict.missing.begin(); it != verdict.missing.end(); ++it)
        missing.insert(it.key(), QJsonArray::fromStringList(*it));
    QJsonArray faults;
    for (auto it = bad.begin(); it != bad.end(); ++it)
        faults += QJsonObject{{"file", it.key()}, {"error", it->text()}, {"reasons", it->toJson()}};
    QJsonObject result{{"valid", QJsonArray::fromStringList(verdict.valid)}, {"missing", missing}};
    if (!faults.isEmpty())
        result.insert("faults", faults);
    return result;
}

/// Why nothing can be exported to the path, empty if it can.
Answer refusalOf(const QString& target) {
    if (!isArchivePath(target) || QDir::cleanPath(target) != target || !target.endsWith(".tar"))
        return Answer::failure(Fault::InvalidArgs, "The target is no absolute path of a .tar file.");
    const QFileInfo directory(QFileInfo(target).path());
    if (!directory.isDir() || !directory.isWritable())
        return Answer::failure(Fault::Failed,
                               Reason(Reason::CannotWrite, {target, "the directory cannot be written to"}));
    return Answer::of();
}

}  // namespace

OfflineRequests::OfflineRequests(BottleEngine* engine, Downloads* downloads, DependencyRequests* dependencies,
                                 QObject* parent)
    : QObject(parent), m_engine(engine), m_downloads(downloads), m_dependencies(dependencies) {}

void OfflineRequests::recover() {
    OfflineArchive::removeUnfinished(m_engine->dataDir() + UnfinishedExport);
    for (const QString& path : OfflineImport::leftovers(m_downloads->directory())) {
        qWarning() << "an earlier run of the service was interrupted; removing what it left:" << path;
        m_engine->reclaimer()->remove(path);
    }
}

void OfflineRequests::exportDeps(const QStringList& components, const QString& target, const Reply& reply) {
    const bool areNames = std::all_of(components.begin(), components.end(), &Sources::isPlainName);
    if (components.isEmpty() || components.size() > OfflineList::MaximumComponents || !areNames) {
        reply(Answer::failure(Fault::InvalidArgs, "No components, too many, or names that are none."));
        return;
    }
    const Answer refusal =
        isExporting() ? Answer::failure(Fault::Failed, Reason::ExportRunning) : refusalOf(target);
    if (!refusal.isGood()) {
        reply(refusal);
        return;
    }
    OfflineExport::Asked asked{components, target, m_engine->dataDir() + UnfinishedExport};
    asked.components.removeDuplicates();
    m_export = std::make_unique<OfflineExport>(asked, m_downloads, m_dependencies->recipes(),
                                               m_dependencies->sources());
    reply(Answer::of());
    start(m_export.get(), "export");
}

void OfflineRequests::importDeps(const QString& bottle, const QStringList& archives,
                                 const QStringList& components, const Reply& reply) {
    if (RequestChecks::refuseUnknown(m_engine->bottles(), bottle, reply))
        return;
    if (archives.isEmpty() || archives.size() > MaximumArchives ||
        !std::all_of(archives.begin(), archives.end(), &isArchivePath)) {
        reply(Answer::failure(Fault::InvalidArgs, "No files, too many, or paths that are not absolute."));
        return;
    }
    if (isImporting()) {
        reply(Answer::failure(Fault::Failed, Reason::ImportRunning));
        return;
    }
    m_isPreparing = true;
    m_import.reset();
    m_engine->waitBeforeInstall(bottle, this, [=](const QStringList& running) {
        m_isPreparing = running.isEmpty();
        if (running.isEmpty())
            readLists(bottle, archives, components, reply);
        else
            reply(Answer::busy(running));
    });
}

void OfflineRequests::readLists(const QString& bottle, const QStringList& archives,
                                const QStringList& components, const Reply& reply) {
    Background::run(
        this, [archives, sources = m_dependencies->sources()] { return listsOf(archives, sources); },
        [=](const Lists& lists) {
            m_isPreparing = false;
            OfflineImport::Asked asked{bottle, {}, {}, m_engine->dataDir(), m_downloads->directory()};
            Reason failure;
            for (const Reason& reason : lists.bad) {
                qWarning().noquote() << "not imported:" << reason.text();
                failure += reason;
            }
            for (auto it = lists.good.begin(); it != lists.good.end(); ++it) {
                for (const QString& component : it->components.keys()) {
                    if (components.isEmpty() || components.contains(component))
                        asked.archives[it.key()] += component;
                }
                asked.components += asked.archives.value(it.key());
            }
            asked.components.removeDuplicates();
            if (asked.components.isEmpty() && failure.isEmpty())
                failure = Reason(Reason::NoComponent, {components.value(0)});
            if (asked.components.isEmpty())
                reply(Answer::failure(Fault::Failed, failure));
            else
                startImport(asked, reply);
        });
}

void OfflineRequests::startImport(const OfflineImport::Asked& asked, const Reply& reply) {
    m_import = std::make_unique<OfflineImport>(asked, m_dependencies);
    reply(Answer::of());
    start(m_import.get(), "import");
}

void OfflineRequests::start(OfflineTransfer* transfer, const QString& type) {
    connect(transfer, &OfflineTransfer::changed, this,
            [this, type](const QString& component, const QJsonObject& state) {
                QJsonObject info = state;
                info.insert("name", component);
                Q_EMIT progress(type, info);
            });
    transfer->start();
}

void OfflineRequests::check(const QStringList& namesAndArchives, const Reply& reply) {
    QStringList names, archives;
    for (const QString& each : namesAndArchives)
        (isArchivePath(each) ? archives : names) += each;
    if (names.size() > OfflineList::MaximumComponents || archives.size() > MaximumArchives) {
        reply(Answer::failure(Fault::InvalidArgs, "Too many components or files."));
        return;
    }
    Background::run(
        this,
        [names, archives, recipes = m_dependencies->recipes(), sources = m_dependencies->sources(),
         store = m_downloads->directory()] {
            const Lists lists = listsOf(archives, sources);
            QStringList all = names;
            QSet<QString> files;
            for (const OfflineList& list : lists.good) {
                all += list.components.keys();
                for (const QString& file : list.files.keys())
                    files += file;
            }
            all.removeDuplicates();
            for (const QString& file : QDir(store).entryList(QDir::Files))
                files += file;
            return JsonText::compact(toJson(OfflineCheck::verdict(all, files, recipes), lists.bad));
        },
        [reply](const QString& result) { reply(Answer::of(result)); });
}

QStringList OfflineRequests::dependencies(const QString& component) const {
    return OfflineCheck::needed(component, m_dependencies->recipes());
}

void OfflineRequests::cancelExport() {
    if (isExporting())
        m_export->cancel();
}

void OfflineRequests::cancelImport() {
    if (m_import && !m_import->isDone())
        m_import->cancel();
}

void OfflineRequests::close() {
    cancelExport();
    cancelImport();
}
