#pragma once

#include <QJsonObject>
#include <QObject>
#include <QQueue>
#include <atomic>
#include <functional>
#include <memory>

#include "bottleservice/components/Recipe.h"
#include "bottleservice/wine/Runners.h"

class QTemporaryDir;
class WineCommand;
class RegistryWriter;

/// Carries out the steps of recipes in a bottle, with the bottle's own Wine and files that have been fetched.
/// Does not write bottle.yml: the caller enters overrides(). Owned by its job; lives in the main thread,
/// works in child processes and worker threads.
class RecipeRunner : public QObject {
    Q_OBJECT

public:
    /// Files are unpacked below workPath, which exists and is removed with what an interrupted work has left.
    /// fileOf returns the path of a fetched file.
    RecipeRunner(const Runner& runner, const QString& bottlePath, const QString& workPath,
                 const QVector<Recipe>& recipes, std::function<QString(const QString&)> fileOf,
                 QObject* parent = nullptr);
    ~RecipeRunner() override;

    void start();
    /// Ends the work; finished() follows with a reason.
    void cancel();

    int total() const { return m_total; }
    /// DLL to load method.
    QJsonObject overrides() const { return m_overrides; }

Q_SIGNALS:
    void described(const QString& text);
    void stepDone(int done, int total);
    /// Exactly once; an empty reason is success.
    void finished(const Reason& reason);

private:
    void next();
    void carryOut(const RecipeStep& step);
    void run(const RecipeStep& step);
    void runProgram(const RecipeStep& step, const QString& program);
    void runWinetricks(const QString& verb);
    void unpack(const RecipeStep& step);
    using Work = std::function<Reason(const QString& directory, QStringList* files)>;
    void inDirectory(const Work& work, std::function<void(const QStringList& files)> done);
    void registerFiles(QStringList files);
    void addOverrides(const RecipeStep& step);
    void writeRegistry(const RegistryChange& change);
    /// `file` is the name in error texts.
    void command(const QString& program, const QStringList& arguments, const QString& file,
                 std::function<void()> done);
    QProcessEnvironment environment() const;
    void stepEnded(const Reason& reason);
    void finish(const Reason& reason);

    Runner m_runner;
    QString m_bottlePath;
    QString m_workPath;
    QString m_name;  ///< of the component, for messages
    RecipeTarget m_target;
    std::function<QString(const QString&)> m_fileOf;
    QQueue<RecipeStep> m_steps;
    int m_total = 0;
    QJsonObject m_overrides;
    std::unique_ptr<QTemporaryDir> m_unpacked;
    WineCommand* m_command = nullptr;
    RegistryWriter* m_writer = nullptr;
    bool m_done = false;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
};
