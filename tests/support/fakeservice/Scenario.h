#pragma once

#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

/// What the fake answers. Keys, most specific first: "Bottles.get:office", "Bottles.get", "get:office",
/// "get"; the part before the point is the interface's last word, the part behind the colon the call's first
/// argument. Several answers under one key are used one after the other and the last one stays.
///
/// An answer is an object with one of "text" (string reply), "number", "list" (of strings), "empty": true
/// (reply without arguments), "error" (message, with "errorName" and "reasons" if wanted), "vanish": true
/// (the process ends without a reply); and, if wanted, "delay" (ms) or "hold": true (until released).
class Scenario {
public:
    void set(const QString& key, const QList<QJsonObject>& answers) { m_answers.insert(key, answers); }
    QJsonObject answerFor(const QString& interface, const QString& method, const QString& firstArgument);

    /// The signature that the bottle interface's method has on the wire; null for a method that it doesn't
    /// have.
    static QString bottleSignature(const QString& method);
    static QStringList bottleMethods();  ///< sorted

private:
    static QJsonObject ordinaryAnswer(const QString& word, const QString& method);

    QHash<QString, QList<QJsonObject>> m_answers;
};
