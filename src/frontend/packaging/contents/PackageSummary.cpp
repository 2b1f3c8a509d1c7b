#include "packaging/contents/PackageSummary.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

constexpr double LargestNumber = 1e15;

qint64 number(const QJsonObject& object, const char* key) {
    const double value = object.value(QLatin1String(key)).toDouble();
    return value > 0 && value < LargestNumber ? qint64(value) : 0;
}

PackageSummary::Part part(const QJsonObject& object) {
    return {object.value("place").toString(), number(object, "bytes"), number(object, "files")};
}

template <class Row, class Read>
QVector<Row> rows(const QJsonArray& array, Read read) {
    QVector<Row> found;
    for (int i = 0; i < qMin(array.size(), PackageSummary::MaximumRows); ++i)
        found.append(read(array.at(i).toObject()));
    return found;
}

}  // namespace

qint64 PackageSummary::leftOutEntries() const {
    qint64 count = 0;
    for (const LeftOut& row : leftOut)
        count += row.entries;
    return count;
}

std::optional<PackageSummary> PackageSummary::fromJson(const QByteArray& text) {
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject object = document.object();
    PackageSummary summary;
    summary.all = part(object);
    summary.templates = part(object.value("templates").toObject());
    summary.folders = rows<Part>(object.value("folders").toArray(), part);
    summary.leftOut = rows<LeftOut>(object.value("leftOut").toArray(), [](const QJsonObject& row) {
        return LeftOut{row.value("place").toString(), row.value("why").toString(), number(row, "entries")};
    });
    summary.wineLinks = number(object, "wineLinks");
    summary.nameCause = object.value("nameCause").toString();
    return summary;
}
