#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QQueue>
#include <atomic>
#include <memory>

#include "bottleservice/components/InstallPlan.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/result/Answer.h"

class BottleEngine;
class Downloads;
class FileFetch;
class InstallDependencyJob;

/// The requests about the components that programs need in a bottle. The files of a recipe are fetched before
/// the bottle's turn, so that the bottle can be used and changed meanwhile; only the installation waits in
/// the bottle's queue. Installations into one bottle are carried out one after the other. Owned by
/// BottleService; lives in the main thread.
class DependencyRequests : public QObject {
    Q_OBJECT

public:
    DependencyRequests(BottleEngine* engine, Downloads* downloads, const QString& catalogueDir,
                       QObject* parent = nullptr);

    /// Answers when it is known whether programs run in the bottle, in which case it fails with Busy, or at
    /// once when other installations come first. done() tells the result, also of a refusal, unless the name
    /// is invalid. One that is under way already is joined.
    void install(const QString& bottle, const QString& dependency, const Reply& reply);
    /// The same without the network: every file must be on this machine, and is only read. `ended` gets the
    /// result of this very installation, exactly once and perhaps at once. Returns its number, for
    /// cancelNumber().
    int installFromStore(const QString& bottle, const QString& dependency, const Reply& ended);
    /// Answers with the name of the component that is being installed, or an empty text.
    void installing(const QString& bottle, const Reply& reply);
    /// Answers with an array: that component and then those that wait, in their order.
    void queue(const QString& bottle, const Reply& reply);
    /// Cancels one request for the running installation, which goes on where there are others. Those that
    /// wait are carried out.
    void cancel(const QString& bottle, const Reply& reply);
    /// Cancels one request for the component, whether its installation runs or waits; where there are others,
    /// the installation goes on. Does nothing where there is none.
    void cancelOne(const QString& bottle, const QString& dependency, const Reply& reply);
    /// The same for the one with this number alone.
    void cancelNumber(const QString& bottle, int number);
    /// The bottle is being deleted: cancels the running installation and those that wait.
    void cancelAll(const QString& bottle);

    /// What the installation into the bottle would consist of. Changes nothing.
    InstallPlan planOf(const QString& bottle, const QString& dependency, bool fromStore = false) const {
        return plansOf(bottle, {dependency}, fromStore).first();
    }
    /// The same for each of several; they are not added up.
    QVector<InstallPlan> plansOf(const QString& bottle, const QStringList& dependencies,
                                 bool fromStore = false) const;
    Sources sources() const;
    Recipes recipes() const;

    /// Ends all downloads; the service ends.
    void close();

    bool isIdle() const { return m_lines.isEmpty(); }

Q_SIGNALS:
    /// In bytes; total is 0 while it is not known.
    void progress(const QString& bottle, const QString& dependency, qint64 received, qint64 total);
    void described(const QString& bottle, const QString& dependency, const QString& text);
    void stepDone(const QString& bottle, const QString& dependency, int done, int total);
    /// When the same component is requested again after a cancel, only the end of the second request is told.
    /// The text of a good result is empty or, where others were installed with it, the array of all names.
    void done(const QString& bottle, const QString& dependency, const Answer& result);

private:
    struct Install {
        QString dependency;
        bool fromStore = false;
        Reply ended;     ///< may be empty
        int number = 0;  ///< unique, of those from the store
        QPointer<FileFetch> fetch;
        QPointer<InstallDependencyJob> job;
        std::shared_ptr<std::atomic_bool> cancelled = std::make_shared<std::atomic_bool>(false);
        int askers = 1;
        bool hasCome = false;  ///< an earlier installation has brought it
    };

    void add(const QString& bottle, const Install& install, const Reply& reply);
    void startFirst(const QString& bottle, const Reply& reply);
    void planFirst(const QString& bottle);
    void obtainFiles(const QString& bottle, const QVector<Recipe>& recipes);
    void fetch(const QString& bottle, const QVector<Recipe>& recipes, const QVector<Source>& wanted);
    void checkStore(const QString& bottle, const QVector<Recipe>& recipes, const QVector<Source>& wanted);
    void onFilesReady(const QString& bottle, const QVector<Recipe>& recipes, const Reason& reason);
    void enqueue(const QString& bottle, const QVector<Recipe>& recipes);
    void firstInstalled(const QString& bottle, const QVector<Recipe>& recipes);
    void firstEnded(const QString& bottle, const Answer& result);
    void cancelFirst(const QString& bottle);
    void cancelAt(const QString& bottle, int place);

    BottleEngine* m_engine;
    Downloads* m_downloads;
    QString m_catalogueDir;
    QHash<QString, QQueue<Install>> m_lines;  ///< by bottle
    int m_lastNumber = 0;
};
