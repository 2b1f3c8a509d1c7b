#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include "bottleservice/result/Answer.h"
#include "bottleservice/wire/BusContract.h"

/// One object on the bus: checks a call against the contract, passes it to the function in the table of
/// methods and sends the reply when the answer comes. A method of the contract without a function answers
/// NotSupported. Derived classes and the functions in this folder only fill the table. Owned by
/// BottleService; lives in the main thread.
class BusObject : public QDBusVirtualObject {
    Q_OBJECT

public:
    BusObject(const QString& path, const QString& contractResource, QObject* parent = nullptr);

    /// Registers the object on the bus; false if its path is in use.
    bool registerOn(const QDBusConnection& connection);

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

    using Handler = std::function<void(const QVariantList& arguments, const Reply& reply)>;

    /// Adds a method of the contract to the table.
    void handle(const QString& method, Handler handler);

    /// Sends a signal of the contract.
    void emitSignal(const QString& name, const QVariantList& arguments);

Q_SIGNALS:
    /// A method was called.
    void called();
    /// A call of a method of the contract was answered with an error without being carried out.
    void refused(const QString& method, const QVariantList& arguments, const Answer& verdict);

private:
    Answer check(const QDBusMessage& message) const;
    void answer(const QDBusConnection& connection, const QDBusMessage& message, const Answer& answer) const;

    QString m_path;
    BusContract m_contract;
    QHash<QString, Handler> m_handlers;
    QDBusConnection m_connection;
};
