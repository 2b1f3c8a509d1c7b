#include "bottleservice/wire/SettingsMethods.h"

#include "bottleservice/requests/SettingsRequests.h"
#include "bottleservice/wire/TextMethods.h"

namespace {

void addLists(BusObject* object, SettingsRequests* requests) {
    object->handle("listDllOverrides", [requests](const QVariantList& arguments, const Reply& reply) {
        reply(requests->listDllOverrides(arguments[0].toString()));
    });
    object->handle("listFontReplacements", [requests](const QVariantList& arguments, const Reply& reply) {
        reply(requests->listFontReplacements(arguments[0].toString()));
    });
    object->handle("updateDllOverride", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->updateDllOverride(arguments[0].toString(), arguments[1].toString(), arguments[2].toString(),
                                    arguments[3].toBool(), reply);
    });
    object->handle("addFontReplacements", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->addFontReplacement(arguments[0].toString(), arguments[1].toString(),
                                     arguments[2].toString(), reply);
    });
}

}  // namespace

void addSettingsMethods(BusObject* object, SettingsRequests* requests) {
    addLists(object, requests);
    object->handle("setDPI", [requests](const QVariantList& arguments, const Reply& reply) {
        requests->setDpi(arguments[0].toString(), arguments[1].toInt(), reply);
    });
    const std::pair<const char*, const char*> switches[] = {{"setCpuRendering", "cpu_rendering"},
                                                            {"setDiscreteGpu", "discrete_gpu"},
                                                            {"setMemOptimized", "mem_optimized"},
                                                            {"setNTSync", "ntsync"}};
    for (const auto& [method, parameter] : switches) {
        object->handle(
            method, [requests, parameter = parameter](const QVariantList& arguments, const Reply& reply) {
                requests->setSwitch(arguments[0].toString(), parameter, arguments[1].toBool(), reply);
            });
    }
    handleTwoTexts<SettingsRequests>(object, requests,
                                     {{"setD3dRenderer", &SettingsRequests::setRenderer},
                                      {"setWindowsVersion", &SettingsRequests::setWindowsVersion},
                                      {"setEmulator", &SettingsRequests::setEmulator},
                                      {"removeFontReplacement", &SettingsRequests::removeFontReplacement}});
}
