#pragma once

#include <QObject>
#include <QVector>

#include "bottleservice/components/Recipe.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/wine/Runners.h"

class Downloads;
class FileFetch;
class RecipeRunner;

/// Installs one component, with those that it needs, into a bottle that is being made: fetches its files and
/// carries out its recipes. Owned by SetupBottleJob; lives in the main thread.
class SetupDependency : public QObject {
    Q_OBJECT

public:
    SetupDependency(const Runner& runner, const QString& bottlePath, const QVector<Recipe>& recipes,
                    const Sources& sources, Downloads* downloads, QObject* parent = nullptr);

    void start();
    /// Ends the work; finished() follows with a reason.
    void cancel();

    /// DLL to load method, of the recipes.
    QJsonObject overrides() const;

Q_SIGNALS:
    void described(const QString& text);
    /// In bytes; total is 0 while it is not known.
    void progress(const QString& file, qint64 received, qint64 total);
    /// Exactly once; an empty reason is success.
    void finished(const Reason& reason);

private:
    void onFetched(const Reason& reason);

    QVector<Recipe> m_recipes;
    FileFetch* m_fetch;
    RecipeRunner* m_steps;
    QString m_file;  ///< that is being fetched
    bool m_isFetched = false;
};
