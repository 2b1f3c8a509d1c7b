#include "inspect/Scanner.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

// Included last, since its macros would change the other headers.
#include <yara.h>

namespace {

constexpr int TimeLimitSeconds = 10;  // a third of the callers' time-out, for busy machines
constexpr int MaximumVersionBytes = 100;

struct Found {
    std::vector<Scanner::Value> values;
    QStringList rules;                ///< names of the rules of `values`
    QMap<QString, QString> versions;  ///< logged by rules, by rule name
};

/// The last version number in the text, preferably one with a dot.
QString versionIn(const QString& text) {
    static const QRegularExpression expression("[0-9]+(\\.[0-9]+)*");
    QString version;
    auto matches = expression.globalMatch(text);
    while (matches.hasNext()) {
        const QString number = matches.next().captured();
        if (version.isEmpty() || number.contains('.') || !version.contains('.'))
            version = number;
    }
    return version;
}

QString matchedVersion(YR_SCAN_CONTEXT* context, YR_RULE* rule) {
    YR_STRING* string = nullptr;
    YR_MATCH* match = nullptr;
    yr_rule_strings_foreach(rule, string) {
        if (QByteArray(string->identifier) != "$version")
            continue;
        yr_string_matches_foreach(context, string, match) {
            const QByteArray bytes(reinterpret_cast<const char*>(match->data),
                                   qMin(match->data_length, MaximumVersionBytes));
            return versionIn(QString::fromLatin1(QByteArray(bytes).replace('\0', "")));
        }
    }
    return {};
}

int onMessage(YR_SCAN_CONTEXT* context, int message, void* data, void* user) {
    auto* found = static_cast<Found*>(user);
    if (message == CALLBACK_MSG_CONSOLE_LOG) {
        const QString line = QString::fromLatin1(static_cast<const char*>(data));
        found->versions.insert(line.section('=', 0, 0), line.section('=', 1));
    }
    if (message != CALLBACK_MSG_RULE_MATCHING)
        return CALLBACK_CONTINUE;
    auto* rule = static_cast<YR_RULE*>(data);
    Scanner::Value value;
    YR_META* meta = nullptr;
    yr_rule_metas_foreach(rule, meta) {
        if (meta->type != META_TYPE_STRING)
            continue;
        const QByteArray key = meta->identifier;
        QString* target = key == "type"      ? &value.type
                          : key == "name"    ? &value.name
                          : key == "version" ? &value.version
                          : key == "info"    ? &value.info
                                             : nullptr;
        if (target)
            *target = QString::fromUtf8(meta->string);
    }
    if (value.version.isEmpty())
        value.version = matchedVersion(context, rule);
    found->values.push_back(value);
    found->rules += rule->identifier;
    return CALLBACK_CONTINUE;
}

void onCompilerMessage(int level, const char* file, int line, const YR_RULE*, const char* message,
                       void* user) {
    if (level == YARA_ERROR_LEVEL_ERROR)
        *static_cast<QString*>(user) += QString("%1:%2: %3 ").arg(file).arg(line).arg(message);
}

}  // namespace

Scanner::Scanner() {
    yr_initialize();
}

Scanner::~Scanner() {
    if (m_rules)
        yr_rules_destroy(m_rules);
    yr_finalize();
}

bool Scanner::loadRules(const QString& directory, QString* error) {
    YR_COMPILER* compiler = nullptr;
    const QStringList names = QDir(directory).entryList({"*.yar"}, QDir::Files, QDir::Name);
    if (names.isEmpty() || yr_compiler_create(&compiler) != ERROR_SUCCESS) {
        *error = "no rules in " + directory;
        return false;
    }
    yr_compiler_set_callback(compiler, onCompilerMessage, error);
    int faults = 0;
    for (const QString& name : names) {
        QFile file(directory + '/' + name);
        if (file.open(QIODevice::ReadOnly)) {
            faults += yr_compiler_add_string(compiler, file.readAll().constData(), nullptr);
        } else {
            *error += name + " cannot be read ";
            ++faults;
        }
    }
    const bool good = faults == 0 && yr_compiler_get_rules(compiler, &m_rules) == ERROR_SUCCESS;
    yr_compiler_destroy(compiler);
    return good;
}

bool Scanner::scan(const uchar* content, qint64 size, std::vector<Value>* values) const {
    Found found;
    const int result = yr_rules_scan_mem(m_rules, content, size_t(size), SCAN_FLAGS_REPORT_RULES_MATCHING,
                                         onMessage, &found, TimeLimitSeconds);
    for (size_t i = 0; i < found.values.size(); ++i) {
        const QString logged = found.versions.value(found.rules[int(i)]);
        if (found.values[i].version.isEmpty())
            found.values[i].version = logged;
    }
    *values = std::move(found.values);
    return result == ERROR_SUCCESS;
}
