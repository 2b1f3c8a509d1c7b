#pragma once

#include <QDate>

#include "storeserver/data/Fault.h"

namespace StoreServer {

/// A text in the languages of the store. Each falls back to the other.
struct Translated {
    QString en;
    QString zh;

    const QString& english() const { return en.isEmpty() ? zh : en; }
    const QString& chinese() const { return zh.isEmpty() ? en : zh; }
};

struct CategoryRecord {
    qint64 id = 0;  ///< 1 to 2147483647
    Translated names;
    int sort = 0;
};

/// A kind of problem that users report.
struct IssueTypeRecord {
    QString id;  ///< [a-z0-9-]{1,32}
    Translated names;
};

/// The facts of one application: its store.yml, under the name of its directory.
struct AppRecord {
    QString appInfoId;  ///< isAppInfoId()
    qint64 appId = 0;   ///< at least 1
    Translated names;
    qint64 category = 0;
    QString version;
    qint64 size = 0;  ///< bytes; 0 is unknown
    Translated brief;
    Translated description;
    int score = 0;      ///< 0 to 5
    int recommend = 0;  ///< 0 or 1
    QString contributorName;
    QString contributorEmail;
    QString site;
    QString download;
    QDate updated;
    qint64 installations = 0;
};

/// [a-z0-9][a-z0-9.-]{0,63}, but not digits alone: bottles are named by appInfoId or by appId, and one's name
/// must not be the other's number.
bool isAppInfoId(const QString& name);

/// The kinds of problems of a store that names none of its own.
QList<IssueTypeRecord> standardIssueTypes();

/// The readers take the content of a file, whose path below the store's directory is only for the faults.
/// The result is to be used only if they have added none.
QList<CategoryRecord> readCategories(const QByteArray& text, const QString& file, Faults& faults);
QList<IssueTypeRecord> readIssueTypes(const QByteArray& text, const QString& file, Faults& faults);
AppRecord readApp(const QByteArray& text, const QString& appInfoId, const QString& file, Faults& faults);

}  // namespace StoreServer
