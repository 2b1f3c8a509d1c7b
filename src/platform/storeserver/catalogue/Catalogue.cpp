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

}  // namespace

Catalogue::Catalogue(const QString& file, int readers, const QList<CategoryRecord>& categories)
    : m_categoryCount(categories.size()) {
    QList<CategoryRecord> sorted = categories;
    std::stable_sort(
        sorted.begin(), sorted.end(),
        [](const CategoryRecord& left, const CategoryRecord& right) { return left.sort < right.sort; });
    m_english = categoryObjects(sorted, &Translated::english);
    m_chinese = categoryObjects(sorted, &Translated::chinese);
    for (int index = 0; index < readers; ++index)
        m_readers.emplace_back(QFile::encodeName(file).toStdString());
    if (!m_readers.empty())
        m_appCount = m_readers.front().count();
}

}  // namespace StoreServer
