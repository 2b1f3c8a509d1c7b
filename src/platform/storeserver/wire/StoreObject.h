#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <functional>

namespace StoreServer {

/// The object of com.lumora.Cellarix.Store.xml on the session bus.
class StoreObject : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.lumora.Cellarix.Store")

public:
    /// `addressOf` returns the store's address, or an empty text after setting the error.
    using Address = std::function<QString(QString* error)>;

    explicit StoreObject(Address addressOf, QObject* parent = nullptr);

    /// False if the name has an owner already, or there is no bus.
    bool registerOn(QDBusConnection bus);
    /// Calls that come from now on reach the next process.
    static void unregisterFrom(QDBusConnection bus);

public Q_SLOTS:
    Q_SCRIPTABLE QString address();

private:
    Address m_addressOf;
};

}  // namespace StoreServer
