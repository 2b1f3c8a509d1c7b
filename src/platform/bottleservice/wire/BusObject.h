#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include "bottleservice/result/Answer.h"
#include "bottleservice/wire/BusContract.h"

/// One object on the bus: checks a call against the contract, hands it to the function that the table of
/// methods names and sends the answer when it comes. Methods of the contract without a function answer
/// NotSupported. Derived classes and functions in this folder only fill the table.
class BusObject : public QDBusVirtualObject {
    Q_OBJECT

public:
    BusObject(const QString& path, const QString& contractResource, QObject* parent = nullptr);

    /// Puts the object on the bus; false if the path is taken.
    bool registerOn(const QDBusConnection& connection);

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

    using Handler = std::function<void(const QVariantList& arguments, const Reply& reply)>;

    /// Puts a method of the contract into the table.
    void handle(const QString& method, Handler handler);

    /// Sends a signal of the contract.
    void emitSignal(const QString& name, const QVariantList& arguments);

Q_SIGNALS:
    /// Somebody asks for something.
    void called();

private:
    Answer check(const QDBusMessage& message) const;
    void answer(const QDBusConnection& connection, const QDBusMessage& message, const Answer& answer) const;

    QString m_path;
    BusContract m_contract;
    QHash<QString, Handler> m_handlers;
    QDBusConnection m_connection;
};
