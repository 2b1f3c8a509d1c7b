#pragma once

#include <QJsonObject>
#include <QObject>
#include <QString>
#include <functional>
#include <optional>

/// The bottle of one launch and its record, which is fetched once and then handed to whoever needs it. Owned
/// by the launch; GUI thread; never waits for the service.
///
/// A record that can't be fetched reads as the empty one and is asked for again when it is needed again.
class LaunchBottle : public QObject {
    Q_OBJECT
public:
    explicit LaunchBottle(QObject* parent) : QObject(parent) {}

    const QString& name() const { return m_name; }
    /// Another name drops the record.
    void setName(const QString& name);
    /// For a record that was fetched elsewhere.
    void setRecord(const QJsonObject& record) { m_record = m_lastRecord = record; }
    /// The record as it was fetched last, changed since or not; empty before the first.
    const QJsonObject& lastRecord() const { return m_lastRecord; }
    /// The service has changed the bottle: the record is fetched again when it is needed.
    void setChanged() { m_record.reset(); }

    /// Hands out the record: at once where it is known, or else when the service has answered. Never when the
    /// context goes first.
    void withRecord(QObject* context, const std::function<void(const QJsonObject&)>& take);

private:
    QString m_name;
    std::optional<QJsonObject> m_record;
    QJsonObject m_lastRecord;
};
