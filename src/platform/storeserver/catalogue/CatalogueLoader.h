#pragma once

#include <QHash>
#include <QSet>
#include <memory>

#include "storeserver/catalogue/Catalogue.h"
#include "storeserver/catalogue/CatalogueWriter.h"
#include "storeserver/catalogue/Votes.h"

namespace StoreServer {

/// Makes catalogues of a store's directory. Only what has changed since the last look is read again. An
/// application with a fault is left out, or stays as it was before the fault came in; the same holds for the
/// categories, the issue types and for a directory that cannot be listed. For one thread at a time.
class CatalogueLoader {
public:
    /// Throws SqlError if there is no room for temporary files.
    CatalogueLoader(const QString& directory, int readers);

    /// The score of an application with votes is their average, from the next catalogue on.
    void setVotes(const VotesByName& votes);

    struct Result {
        std::shared_ptr<const Catalogue> catalogue;  ///< null if nothing has changed or none can be made
        Faults faults;
    };
    Result refresh();

private:
    using Entries = QHash<QString, QByteArray>;
    using VoteKeys = QPair<QString, QString>;  // of the English and the Chinese name

    bool readCategories(Faults& faults);
    void readIssueTypes(Faults& faults);
    void update(const QStringList& names, Faults& faults);
    bool replace(const QString& appInfoId, Faults& faults);
    std::shared_ptr<const Catalogue> snapshot() const;

    StoreDirectory m_directory;
    int m_readers;
    std::unique_ptr<CatalogueWriter> m_writer;
    QList<CategoryRecord> m_categories;
    QSet<qint64> m_categoryIds;
    QByteArray m_categoriesSignature;
    QList<IssueTypeRecord> m_issueTypes = standardIssueTypes();
    QByteArray m_issueTypesSignature;
    VotesByName m_votes;
    QHash<QString, VoteKeys> m_voteKeys;
    Entries m_signatures;  ///< of the applications that were read without a fault
    bool m_isChanged = false;
};

}  // namespace StoreServer
