#pragma once

#include "bottleservice/components/OfflineList.h"
#include "bottleservice/components/Recipe.h"
#include "bottleservice/components/Sources.h"
#include "bottleservice/requests/OfflineTransfer.h"

class Downloads;
class FileFetch;

/// Exports components into one file (OfflineList.h): fetches what is not on the machine, one component after
/// the other, and then writes those that are complete. A component that cannot be had fails alone.
class OfflineExport : public OfflineTransfer {
    Q_OBJECT

public:
    struct Asked {
        QStringList components;
        QString target;  ///< absolute path of a file that does not exist
        QString record;  ///< see OfflineArchive::write()
    };

    OfflineExport(const Asked& asked, Downloads* downloads, const Recipes& recipes, const Sources& sources,
                  QObject* parent = nullptr);

    void start() override;
    void cancel() override;

private:
    using Failures = QMap<QString, Reason>;  // by component

    void next();
    Reason refusalOf(const std::optional<Recipe>& recipe, const QString& component) const;
    void fetch(const Recipe& recipe);
    void onProgress(const QString& component, qint64 received, qint64 total);
    void onFetched(const Recipe& recipe, const Reason& reason);
    void fail(const QString& component, const Reason& reason);
    void write();
    void onWritten(const Failures& failures);

    Asked m_asked;
    Downloads* m_downloads;
    Recipes m_recipes;
    Sources m_sources;
    QStringList m_waiting;
    OfflineList m_list;
    FileFetch* m_fetch = nullptr;
    int m_files = 0;    ///< of the current component
    int m_file = 0;     ///< the current one of them, from 1
    int m_percent = 0;  ///< of the current component
};
