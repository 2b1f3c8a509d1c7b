#include "programs/Program.h"

#include <QCollator>
#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <algorithm>
#include <vector>

namespace {

constexpr int LongestName = 256;
constexpr int MostStars = 5;

QCollator collator() {
    // The C locale compares bytes.
    const bool isC = QLocale().language() == QLocale::C;
    QCollator result(isC ? QLocale(QLocale::English) : QLocale());
    result.setNumericMode(true);
    result.setCaseSensitivity(Qt::CaseInsensitive);
    return result;
}

/// The order of programs whose names collate as equal.
bool before(const Program& a, const Program& b) {
    if (a.name != b.name)
        return a.name < b.name;
    return a.ref.bottle != b.ref.bottle ? a.ref.bottle < b.ref.bottle : a.ref.uuid < b.ref.uuid;
}

int boundedStars(const QJsonValue& stars) {
    return qBound(0, qRound(qBound(0.0, stars.toDouble(), double(MostStars))), MostStars);
}

/// The id becomes part of file names.
bool isUsable(const ProgramRef& ref) {
    return !ref.bottle.isEmpty() && !ref.uuid.isEmpty() && !ref.uuid.contains('/');
}

}  // namespace

void Program::setName(const QString& text) {
    name = text.left(LongestName).simplified();
    if (name.isEmpty())
        name = QString(path).replace('\\', '/').section('/', -1).left(LongestName).simplified();
    if (name.isEmpty())
        name = ref.uuid;
}

void Program::update(const QJsonObject& record) {
    const auto text = [&record](const char* key, QString* field) {
        if (record.contains(QLatin1String(key)))
            *field = record.value(QLatin1String(key)).toString();
    };
    text("icon", &icon);
    text("path", &path);
    text("size", &size);
    text("created_time", &createdTime);
    if (record.contains("stars"))
        stars = boundedStars(record.value("stars"));
    if (record.contains("name") || name.isEmpty())
        setName(record.value("name").toString());
}

void ProgramOrder::sort(QVector<ProgramPtr>* programs) {
    const QCollator order = collator();
    std::vector<std::pair<QCollatorSortKey, ProgramPtr>> keyed;
    keyed.reserve(size_t(programs->size()));
    for (const ProgramPtr& program : qAsConst(*programs))
        keyed.emplace_back(order.sortKey(program->name), program);
    std::sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) {
        const int compared = a.first.compare(b.first);
        return compared ? compared < 0 : before(*a.second, *b.second);
    });
    std::transform(keyed.begin(), keyed.end(), programs->begin(),
                   [](const auto& pair) { return pair.second; });
}

int ProgramOrder::position(const QVector<ProgramPtr>& programs, const Program& program) {
    const QCollator order = collator();
    const auto place = std::lower_bound(programs.begin(), programs.end(), program,
                                        [&order](const ProgramPtr& a, const Program& b) {
                                            const int compared = order.compare(a->name, b.name);
                                            return compared ? compared < 0 : before(*a, b);
                                        });
    return int(place - programs.begin());
}

QVector<ProgramPtr> parsePrograms(const QString& text) {
    const QJsonArray summaries = QJsonDocument::fromJson(text.toUtf8()).array();
    QVector<ProgramPtr> programs;
    programs.reserve(summaries.size());
    QSet<ProgramRef> known;
    for (const QJsonValue& value : summaries) {
        const QJsonObject summary = value.toObject();
        auto program = QSharedPointer<Program>::create();
        program->ref = {summary.value("bottle_name").toString(), summary.value("uuid").toString()};
        if (!isUsable(program->ref) || known.contains(program->ref)) {
            qWarning() << "not a program for the library" << program->ref.bottle << program->ref.uuid;
            continue;
        }
        known.insert(program->ref);
        program->update(summary);
        programs << program;
    }
    ProgramOrder::sort(&programs);
    return programs;
}
