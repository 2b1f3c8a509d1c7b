#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <vector>

struct YR_RULES;

/// Matches the YARA rule files of a directory against the content of a file. Each matching rule becomes one
/// value, as described in the README beside the rules. Takes some 0.01 s, at most 10 s.
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

    /// False, with the reason in `error`, if a rule file is missing or invalid.
    bool loadRules(const QString& directory, QString* error);

    /// False if the scan failed or took too long.
    bool scan(const uchar* content, qint64 size, std::vector<Value>* values) const;

private:
    YR_RULES* m_rules = nullptr;
};
