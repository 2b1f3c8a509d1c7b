#pragma once

#include <QObject>
#include <atomic>
#include <memory>

#include "bottleservice/bottles/BottleStore.h"
#include "bottleservice/result/Reason.h"
#include "bottleservice/wine/Runners.h"

class Reclaimer;
class Templates;

/// A bottle that is being made: a copy of its Wine's template in a hidden directory beside the other bottles,
/// which the next start of the service removes if this one is killed. Owned by a job; lives in the main
/// thread, copies in a worker thread.
class StagedBottle : public QObject {
    Q_OBJECT

public:
    StagedBottle(const BottleStore& store, const QString& name, const Runner& runner, Templates* templates,
                 Reclaimer* reclaimer, QObject* parent = nullptr);

    enum class Content { Template, Nothing };
    /// Makes the copy, or only sees to it that there is a template; finished() follows.
    void start(Content content = Content::Template);
    /// Ends the work; finished() follows with a reason. A template that is being made is finished all the
    /// same, for the next bottle.
    void cancel();

    /// The hidden directory; empty before start().
    QString path() const { return m_directory; }
    const Runner& runner() const { return m_runner; }
    /// The key of the Wine's template.
    QString templateKey() const { return m_templateKey; }
    /// Another name for the bottle, before place().
    void rename(const QString& name) { m_name = name; }
    /// The settings of a new bottle on this Wine.
    BottleYaml freshSettings() const;

    /// Writes the settings and gives the directory the bottle's name, which must be free. Nothing may run in
    /// it. Returns a reason on failure, an empty one on success.
    Reason place(const BottleYaml& settings);
    /// Removes the hidden directory in the background.
    void discard();

Q_SIGNALS:
    /// Exactly once after start(); an empty reason is success.
    void finished(const Reason& reason);

private:
    void copy(const QString& templatePath);

    BottleStore m_store;
    QString m_name;
    Runner m_runner;
    Templates* m_templates;
    Reclaimer* m_reclaimer;
    QString m_directory;
    QString m_templateKey;
    bool m_isWaiting = false;  ///< for the template
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
};
