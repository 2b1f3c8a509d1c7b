#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <vector>

struct YR_RULES;

/// Runs the rule files of a directory over the content of a file and says what each rule that matched stands
/// for; the README beside the rules tells how. Takes some hundredths of a second as a rule and gives up after
/// 10 s.
class Scanner {
public:
    struct Value {
        QString type;
        QString name;
        QString version;
        QString info;
    };

    Scanner();
    ~Scanner();
    Scanner(const Scanner&) = delete;
    Scanner& operator=(const Scanner&) = delete;

    /// False with a sentence when a rule file is missing or wrong.
    bool loadRules(const QString& directory, QString* error);

    /// False when the content could not be looked through in time.
    bool scan(const uchar* content, qint64 size, std::vector<Value>* values) const;

private:
    YR_RULES* m_rules = nullptr;
};
