#pragma once

#include <QJsonObject>
#include <QObject>
#include <QThreadPool>
#include <atomic>

#include "bottleservice/bottles/BottleScan.h"
#include "bottleservice/result/Answer.h"

class BottleEngine;

/// The requests about the programs of bottles: entering, changing, removing, and finding them in the bottle's
/// files. A program that is entered without an icon gets the icon of its file a moment later. Lists and scans
/// read in worker threads; changes go through the bottle's queue. Owned by BottleService; lives in the main
/// thread.
class ProgramRequests : public QObject {
    Q_OBJECT

public:
    /// iconScript is the path of icon_extractor.py.
    ProgramRequests(BottleEngine* engine, const QString& iconScript, QObject* parent = nullptr);
    ~ProgramRequests() override;

    QString iconScript() const { return m_iconScript; }
    bool isIdle() const { return m_worker.activeThreadCount() == 0; }

    void updateExternalProgram(const QString& bottle, const QString& recordJson, const Reply& reply);
    void removeExternalProgram(const QString& bottle, const QString& programId, const Reply& reply);

    /// Summaries of the programs of all bottles.
    void listAllPrograms(const Reply& reply);
    /// The programs that were entered, and those that were only found in the bottle's files.
    void listBottlesAllPrograms(const QString& bottle, const Reply& reply);
    /// The names of DLLs and of updaters beside the programs.
    void listDlls(const QString& bottle, const Reply& reply);
    void listUpdaters(const QString& bottle, const Reply& reply);

    /// Enters the programs of the bottle's shortcuts that were written at this time (seconds since the epoch)
    /// or later. Answers with the records that are new.
    void scanApplicationLinks(const QString& bottle, qint64 since, const Reply& reply);

    using Found = QVector<QJsonObject>;
    /// Enters records of new programs; answers with the complete records. Only from a job of that bottle.
    Answer enter(const QString& bottle, const Found& found);

    /// Announces all programs of a bottle that was made with them, and gives them icons.
    void announce(const QString& bottle);

    /// Writes the manifest of a bottle into it and answers with the file's path. See ManifestExport for the
    /// form.
    void dumpManifest(const QString& formJson, const Reply& reply);

Q_SIGNALS:
    void programAdded(const QString& bottle, const QString& programId, const QString& recordJson);
    void programUpdated(const QString& bottle, const QString& programId, const QString& recordJson);
    /// The bottle was scanned, which callers request when something may have been installed.
    void scanned(const QString& bottle);
    void programDeleted(const QString& bottle, const QString& programId);

private:
    void takeIcon(const QString& bottle, const QString& id, const QString& programPath);
    Answer giveIcon(const QString& bottle, const QString& id, const QString& icon);
    Answer updateProgram(const QString& bottle, const QJsonObject& given);
    Answer removeProgram(const QString& bottle, const QString& programId);
    Answer writeManifest(const QString& bottle, const QJsonObject& form);
    /// Runs work that reads one bottle in a worker thread, beside the bottle's queue.
    void read(const QString& bottle, const Reply& reply, std::function<QJsonArray(const QJsonObject&)> work);
    void inWorker(std::function<Answer()> work, const Reply& reply);

    BottleEngine* m_engine;
    QString m_iconScript;
    std::atomic_bool m_isEnding{false};
    QThreadPool m_worker;
};
