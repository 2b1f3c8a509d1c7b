#include "storeserver/catalogue/Catalogue.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace StoreServer {

namespace {

std::string categoryObjects(const QList<CategoryRecord>& categories,
                            const QString& (Translated::*in)() const) {
    QByteArray objects;
    for (const CategoryRecord& category : categories) {
        const QJsonObject object{
            {"id", category.id}, {"name", (category.names.*in)()}, {"sort", category.sort}};
        objects += (objects.isEmpty() ? "" : ",") + QJsonDocument(object).toJson(QJsonDocument::Compact);
    }
    return objects.toStdString();
}

std::string issueTypeObjects(const QList<IssueTypeRecord>& types) {
    QByteArray objects;
    for (const IssueTypeRecord& type : types) {
        const QJsonObject object{
            {"id", type.id}, {"name", type.names.chinese()}, {"enName", type.names.english()}};
        objects += (objects.isEmpty() ? "" : ",") + QJsonDocument(object).toJson(QJsonDocument::Compact);
    }
    return objects.toStdString();
}

}  // namespace

Catalogue::Catalogue(const QString& file, int readers, const QList<CategoryRecord>& categories,
                     const QList<IssueTypeRecord>& issueTypes)
    : m_categoryCount(categories.size()) {
    QList<CategoryRecord> sorted = categories;
    std::stable_sort(
        sorted.begin(), sorted.end(),
        [](const CategoryRecord& left, const CategoryRecord& right) { return left.sort < right.sort; });
    m_english = categoryObjects(sorted, &Translated::english);
    m_chinese = categoryObjects(sorted, &Translated::chinese);
    m_issueTypes = issueTypeObjects(issueTypes);
    for (int index = 0; index < readers; ++index)
        m_readers.emplace_back(QFile::encodeName(file).toStdString());
    if (!m_readers.empty())
        m_appCount = m_readers.front().count();
}

}  // namespace StoreServer
