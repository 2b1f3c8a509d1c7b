#pragma once

#include "backend/ServiceCalls.h"
#include "fenk/system/Singleton.h"

/// Base of the clients of the background service, one class for each of its objects and one instance a
/// process. A client is a table of methods: each gives the name of the bus method, the arguments in order and
/// the way of the call. It names Fenk::Singleton<Client> a friend and lives in the GUI thread, where it must
/// be used first.
template <class Client>
class ServiceProxy : public ServiceCalls, public Fenk::Singleton<Client> {
protected:
    using ServiceCalls::ServiceCalls;
};
