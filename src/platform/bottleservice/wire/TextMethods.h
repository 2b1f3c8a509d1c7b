#pragma once

#include <initializer_list>
#include <utility>

#include "bottleservice/wire/BusObject.h"

/// Adds methods to the object that take one text, or two, and answer when they are done.
template <class Requests>
void handleOneText(
    BusObject* object, Requests* requests,
    std::initializer_list<std::pair<const char*, void (Requests::*)(const QString&, const Reply&)>> table) {
    for (const auto& [name, function] : table) {
        object->handle(name,
                       [requests, function = function](const QVariantList& arguments, const Reply& reply) {
                           (requests->*function)(arguments[0].toString(), reply);
                       });
    }
}

template <class Requests>
void handleTwoTexts(
    BusObject* object, Requests* requests,
    std::initializer_list<
        std::pair<const char*, void (Requests::*)(const QString&, const QString&, const Reply&)>>
        table) {
    for (const auto& [name, function] : table) {
        object->handle(name,
                       [requests, function = function](const QVariantList& arguments, const Reply& reply) {
                           (requests->*function)(arguments[0].toString(), arguments[1].toString(), reply);
                       });
    }
}
