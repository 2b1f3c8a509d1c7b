#include "bottleservice/requests/OfflineRequests.h"

#include <unistd.h>

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <algorithm>
#include <cerrno>
#include <cstring>

#include "bottleservice/bottles/JsonText.h"
#include "bottleservice/components/Downloads.h"
#include "bottleservice/components/OfflineArchive.h"
#include "bottleservice/components/OfflineCheck.h"
#include "bottleservice/components/OfflineLists.h"
#include "bottleservice/files/Background.h"
#include "bottleservice/requests/BottleEngine.h"
#include "bottleservice/requests/DependencyRequests.h"
#include "bottleservice/requests/RequestChecks.h"

using Fault = Answer::Fault;

namespace {

constexpr int MaximumArchives = 200;
const char UnfinishedExport[] = "/unfinished-export";

bool isArchivePath(const QString& text) {
    return text.startsWith('/') && !text.contains(QChar(0));
}

Answer tooMany() {
    return Answer::failure(Fault::InvalidArgs,
                           Reason(Reason::TooManyFiles, {QString::number(MaximumArchives)}));
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
    if (::access(QFile::encodeName(QFileInfo(target).path() + '/').constData(), W_OK | X_OK) == 0)
        return Answer::of();
    return Answer::failure(Fault::Failed,
                           Reason::ofWriting(target, false, QString::fromLocal8Bit(strerror(errno))));
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
    Answer refusal =
        isExporting() ? Answer::failure(Fault::Failed, Reason::ExportRunning) : refusalOf(target);
    if (components.isEmpty())
        refusal = Answer::failure(Fault::InvalidArgs, "No components are named.");
    else if (components.size() > OfflineList::MaximumComponents)
        refusal = Answer::failure(Fault::InvalidArgs, Reason::ExportTooLarge);
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
    if (archives.size() > MaximumArchives) {
        reply(tooMany());
        return;
    }
    if (archives.isEmpty() || !std::all_of(archives.begin(), archives.end(), &isArchivePath)) {
        reply(Answer::failure(Fault::InvalidArgs, "No files are named, or paths that are not absolute."));
        return;
    }
    if (isImporting()) {
        reply(Answer::failure(Fault::Failed, Reason::ImportRunning));
        return;
    }
    const OfflineImport::Asked asked{bottle, archives, components, m_engine->dataDir(),
                                     m_downloads->directory()};
    m_import = std::make_unique<OfflineImport>(asked, m_engine, m_dependencies);
    connect(m_import.get(), &OfflineImport::begun, this, [this, reply](const Answer& answer) {
        reply(answer);
        if (!answer.isGood())
            m_import.release()->deleteLater();
    });
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
        reply(archives.size() > MaximumArchives
                  ? tooMany()
                  : Answer::failure(Fault::InvalidArgs, "Too many components are named."));
        return;
    }
    Background::run(
        this,
        [names, archives, recipes = m_dependencies->recipes(), sources = m_dependencies->sources(),
         store = m_downloads->directory()] {
            const auto lists = OfflineLists::read(archives, sources, false);
            QStringList all = names;
            QSet<QString> files = OfflineCheck::usableFiles(store, sources);
            for (const OfflineList& list : lists.good) {
                all += list.components.keys();
                for (const QString& file : list.files.keys())
                    files += file;
            }
            all.removeDuplicates();
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

void OfflineRequests::cancelForDeletion(const QString& bottle) {
    if (m_import && m_import->bottle() == bottle)
        cancelImport();
}

void OfflineRequests::close() {
    cancelExport();
    cancelImport();
}
