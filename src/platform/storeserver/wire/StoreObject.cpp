#include "storeserver/wire/StoreObject.h"

namespace StoreServer {

namespace {

const char Name[] = "com.lumora.Cellarix.Store";
const char Path[] = "/com/lumora/Cellarix/Store";
const char Failed[] = "com.lumora.Error.Failed";

}  // namespace

StoreObject::StoreObject(Address addressOf, QObject* parent)
    : QObject(parent), m_addressOf(std::move(addressOf)) {}

bool StoreObject::registerOn(QDBusConnection bus) {
    return bus.registerObject(Path, this, QDBusConnection::ExportScriptableSlots) &&
           bus.registerService(Name);
}

void StoreObject::unregisterFrom(QDBusConnection bus) {
    bus.unregisterService(Name);
}

QString StoreObject::address() {
    QString error;
    const QString address = m_addressOf(&error);
    if (address.isEmpty() && calledFromDBus())
        sendErrorReply(Failed, error);
    return address;
}

}  // namespace StoreServer
