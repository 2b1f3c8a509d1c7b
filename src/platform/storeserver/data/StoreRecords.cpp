#include "storeserver/data/StoreRecords.h"

#include <QRegularExpression>
#include <QUrl>
#include <limits>

#include "storeserver/data/YamlMap.h"

namespace StoreServer {

namespace {

using Need = YamlMap::Need;
using Lines = YamlMap::Lines;

constexpr qint64 MaximumBytes = 256 * 1024;
constexpr int MaximumCategories = 1000;
constexpr int MaximumIssueTypes = 50;
constexpr int NameLength = 100;
constexpr int BriefLength = 300;
constexpr int DescriptionLength = 4000;
constexpr int UrlLength = 1000;
constexpr qint64 MaximumInteger = std::numeric_limits<qint32>::max();
constexpr qint64 MaximumExact = Q_INT64_C(1) << 53;  // what JSON carries exactly

Translated translated(YamlMap& map, const QString& key, int maximum, Need need, Lines lines = Lines::One) {
    YamlMap texts = map.map(key, need);
    Translated result{texts.text("en", maximum, Need::Optional, lines),
                      texts.text("zh", maximum, Need::Optional, lines)};
    if (need == Need::Required && map.has(key) && result.english().isEmpty())
        texts.refuse("en", QString("\"%1\" has a text in no language.").arg(key));
    texts.finish();
    return result;
}

QString webAddress(YamlMap& map, const QString& key) {
    const QString text = map.text(key, UrlLength);
    if (text.isEmpty())
        return {};
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || (url.scheme() != "https" && url.scheme() != "http") || url.host().isEmpty())
        map.refuse(key, QString("\"%1\" must be a web address (https or http).").arg(key));
    return text;
}

QDate day(YamlMap& map, const QString& key) {
    static const QRegularExpression form("\\A[0-9]{4}-[0-9]{2}-[0-9]{2}\\z");
    const QString text = map.text(key, NameLength, Need::Required);
    const QDate date = form.match(text).hasMatch() ? QDate::fromString(text, Qt::ISODate) : QDate();
    if (!text.isEmpty() && !date.isValid())
        map.refuse(key, QString("\"%1\" must be a day such as 2024-05-31.").arg(key));
    return date;
}

YamlTree parse(const QByteArray& text, const QString& file, Faults& faults) {
    QString error;
    YamlTree tree;
    if (text.size() > MaximumBytes)
        error = QString("The file is larger than %1 bytes.").arg(MaximumBytes);
    else
        tree = YamlTree::parse(text, &error);
    if (!error.isEmpty())
        faults.append({file, error});
    return tree;
}

/// The items of a list that is not empty; nothing after a fault.
QVector<YamlTree> parseList(const QByteArray& text, int maximum, const char* what, const QString& file,
                            Faults& faults) {
    const int before = faults.size();
    const YamlTree root = parse(text, file, faults);
    if (faults.size() > before)
        return {};
    if (root.kind == YamlTree::Kind::List && !root.items.isEmpty() && root.items.size() <= maximum)
        return root.items;
    faults.append({file, root.located(QString("This must be a list of 1 to %1 %2.").arg(maximum).arg(what))});
    return {};
}

}  // namespace

QList<IssueTypeRecord> standardIssueTypes() {
    return {{"install", {"Cannot be installed", "无法安装"}},
            {"start", {"Does not start", "无法启动"}},
            {"crash", {"Crashes or freezes", "闪退或卡死"}},
            {"display", {"Display is wrong", "界面显示异常"}},
            {"text", {"Text is garbled", "文字乱码"}},
            {"input", {"Keyboard, mouse or input method", "键盘、鼠标或输入法问题"}},
            {"sound", {"Sound or video", "音频或视频问题"}},
            {"network", {"Network or sign-in", "网络或登录问题"}},
            {"performance", {"Slow", "运行缓慢"}},
            {"other", {"Something else", "其他"}}};
}

bool isAppInfoId(const QString& name) {
    static const QRegularExpression form("\\A(?![0-9]+\\z)[a-z0-9][a-z0-9.-]{0,63}\\z");
    return form.match(name).hasMatch();
}

QList<CategoryRecord> readCategories(const QByteArray& text, const QString& file, Faults& faults) {
    QList<CategoryRecord> records;
    QSet<qint64> ids;
    for (const YamlTree& node : parseList(text, MaximumCategories, "categories", file, faults)) {
        YamlMap map(node, file, faults);
        CategoryRecord record;
        record.id = map.number("id", 1, MaximumInteger, Need::Required);
        record.names = translated(map, "names", NameLength, Need::Required);
        record.sort = int(map.number("sort", 0, MaximumInteger));
        if (ids.contains(record.id))
            map.refuse("id", QString("Another category has the id %1.").arg(record.id));
        map.finish();
        ids.insert(record.id);
        records.append(record);
    }
    return records;
}

QList<IssueTypeRecord> readIssueTypes(const QByteArray& text, const QString& file, Faults& faults) {
    static const QRegularExpression form("\\A[a-z0-9-]{1,32}\\z");
    QList<IssueTypeRecord> records;
    QSet<QString> ids;
    for (const YamlTree& node : parseList(text, MaximumIssueTypes, "kinds of problems", file, faults)) {
        YamlMap map(node, file, faults);
        IssueTypeRecord record;
        record.id = map.text("id", NameLength, Need::Required);
        record.names = translated(map, "names", NameLength, Need::Required);
        if (!record.id.isEmpty() && !form.match(record.id).hasMatch())
            map.refuse("id", "An id has 1 to 32 of the characters a-z, 0-9 and '-'.");
        else if (ids.contains(record.id))
            map.refuse("id", QString("Another kind of problem has the id %1.").arg(record.id));
        map.finish();
        ids.insert(record.id);
        records.append(record);
    }
    return records;
}

AppRecord readApp(const QByteArray& text, const QString& appInfoId, const QString& file, Faults& faults) {
    AppRecord record;
    record.appInfoId = appInfoId;
    const int before = faults.size();
    const YamlTree root = parse(text, file, faults);
    if (faults.size() > before)
        return record;
    YamlMap map(root, file, faults);
    record.appId = map.number("appId", 1, MaximumExact, Need::Required);
    record.names = translated(map, "names", NameLength, Need::Required);
    record.category = map.number("category", 1, MaximumInteger, Need::Required);
    record.version = map.text("version", NameLength);
    record.size = map.number("size", 0, MaximumExact);
    record.brief = translated(map, "brief", BriefLength, Need::Required);
    record.description = translated(map, "description", DescriptionLength, Need::Optional, Lines::Many);
    record.score = int(map.number("score", 0, 5));
    record.recommend = int(map.number("recommend", 0, 1));
    YamlMap contributor = map.map("contributor");
    record.contributorName = contributor.text("name", NameLength);
    record.contributorEmail = contributor.text("email", NameLength);
    contributor.finish();
    record.site = webAddress(map, "site");
    record.download = webAddress(map, "download");
    record.updated = day(map, "updated");
    record.installations = map.number("installations", 0, MaximumInteger);
    map.finish();
    return record;
}

}  // namespace StoreServer
