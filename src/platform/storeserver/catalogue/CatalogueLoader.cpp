#include "storeserver/catalogue/CatalogueLoader.h"

#include <QTemporaryDir>

namespace StoreServer {

namespace {

Fault fault(const SqlError& error) {
    return {"catalogue", QString("It cannot be written: %1.").arg(error.what())};
}

}  // namespace

CatalogueLoader::CatalogueLoader(const QString& directory, int readers)
    : m_directory(directory), m_readers(readers), m_writer(std::make_unique<CatalogueWriter>()) {}

void CatalogueLoader::setVotes(const VotesByName& votes) {
    if (votes == m_votes)
        return;
    for (auto app = m_voteKeys.cbegin(); app != m_voteKeys.cend(); ++app) {
        const auto& [english, chinese] = *app;
        if (tallyOf(english, chinese, votes).rating() != tallyOf(english, chinese, m_votes).rating())
            m_signatures.remove(app.key());
    }
    m_votes = votes;
}

CatalogueLoader::Result CatalogueLoader::refresh() {
    Result result;
    const bool hasCategories = readCategories(result.faults);
    readIssueTypes(result.faults);
    const std::optional<QStringList> names = m_directory.appInfoIds(result.faults);
    if (!hasCategories || !names)
        return result;
    const Entries signatures = m_signatures;
    try {
        m_writer->begin();
        update(*names, result.faults);
        m_writer->commit();
        if (m_isChanged)
            result.catalogue = snapshot();
        m_isChanged = false;
    } catch (const SqlError& error) {
        m_writer->rollBack();
        m_signatures = signatures;
        m_isChanged = true;
        result.faults.append(fault(error));
    }
    return result;
}

/// False if there never were any.
bool CatalogueLoader::readCategories(Faults& faults) {
    const QByteArray signature = m_directory.categoriesSignature();
    if (signature == m_categoriesSignature)
        return true;
    const std::optional<QList<CategoryRecord>> categories = m_directory.categories(faults);
    if (!categories)
        return !m_categories.isEmpty();
    m_categories = *categories;
    m_categoryIds.clear();
    for (const CategoryRecord& category : m_categories)
        m_categoryIds.insert(category.id);
    m_categoriesSignature = signature;
    m_signatures.clear();  // an application may have lost its category
    m_isChanged = true;
    return true;
}

void CatalogueLoader::readIssueTypes(Faults& faults) {
    const QByteArray signature = m_directory.issueTypesSignature();
    if (signature == m_issueTypesSignature)
        return;
    if (const std::optional<QList<IssueTypeRecord>> types = m_directory.issueTypes(faults)) {
        m_issueTypes = *types;
        m_issueTypesSignature = signature;
        m_isChanged = true;
    }
}

void CatalogueLoader::update(const QStringList& names, Faults& faults) {
    const QSet<QString> present(names.begin(), names.end());
    for (const QString& known : m_writer->appInfoIds()) {
        if (!present.contains(known)) {
            m_writer->remove(known);
            m_signatures.remove(known);
            m_voteKeys.remove(known);
            m_isChanged = true;
        }
    }
    for (const QString& name : names) {
        const QByteArray signature = m_directory.signature(name);
        if (m_signatures.value(name) == signature)
            continue;
        if (replace(name, faults)) {
            m_signatures.insert(name, signature);
            m_isChanged = true;
        } else {
            m_signatures.remove(name);
        }
    }
}

bool CatalogueLoader::replace(const QString& appInfoId, Faults& faults) {
    std::optional<AppEntry> entry = m_directory.app(appInfoId, faults);
    if (!entry)
        return false;
    const QString file = "apps/" + appInfoId + "/store.yml";
    if (!m_categoryIds.contains(entry->record.category)) {
        faults.append({file, QString("No category has the id %1.").arg(entry->record.category)});
        return false;
    }
    const QString other = m_writer->appWithId(entry->record.appId);
    if (!other.isEmpty() && other != appInfoId) {
        if (m_directory.signature(other) == m_signatures.value(other)) {
            faults.append({file, QString("The appId %1 is that of %2.").arg(entry->record.appId).arg(other)});
            return false;
        }
        // It has changed as well, and comes back with the number that it has now.
        m_writer->remove(other);
        m_signatures.remove(other);
    }
    AppRecord& record = entry->record;
    const VoteKeys keys{voteKey(record.names.english()), voteKey(record.names.chinese())};
    m_voteKeys.insert(appInfoId, keys);
    if (const int rating = tallyOf(keys.first, keys.second, m_votes).rating())
        record.score = rating;
    m_writer->remove(appInfoId);
    m_writer->add(*entry);
    return true;
}

std::shared_ptr<const Catalogue> CatalogueLoader::snapshot() const {
    const QTemporaryDir directory;
    if (!directory.isValid())
        throw SqlError(directory.errorString().toStdString());
    const QString file = directory.filePath("catalogue");
    m_writer->copyTo(file);
    return std::make_shared<const Catalogue>(file, m_readers, m_categories, m_issueTypes);
}

}  // namespace StoreServer
