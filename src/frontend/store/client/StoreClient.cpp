#include "store/client/StoreClient.h"

#include <QDebug>
#include <QLocale>

#include "core/base/BuildInfo.h"
#include "core/base/SettingsStore.h"
#include "fenk/system/SystemInfo.h"
#include "probes/MachineUtils.h"
#include "store/client/LocalStore.h"
#include "store/client/VeskClientApiLogger.h"
#include "store/client/VeskClientDefaultApi.h"

namespace {

constexpr int TimeOutMs = 20000;

QString platformOf(int editionType) {
    switch (editionType) {
        case 1:
            return QStringLiteral("Professional");
        case 2:
            return QStringLiteral("Home");
        case 3:
            return QStringLiteral("Community");
        case 10:
            return QStringLiteral("E");
        default:
            return {};
    }
}

QMap<QString, QString> makeHeaders() {
    const Fenk::SystemInfo system;
    const QString language = QLocale().name();
    return {{"X-VESK-Language", language},
            {"X-VESK-Region", language.startsWith("zh") ? "CN" : "OTHER"},
            {"X-VESK-OSBuild", system.osBuild()},
            {"X-VESK-IsWayland", qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ? "0" : "1"},
            {"X-VESK-BaselineMainVersion", system.majorVersion()},
            {"X-VESK-ClientVersion", BuildInfo::version()},
            {"X-VESK-BaselineVersion", system.minorVersion()},
            {"X-VESK-Arch", MachineUtils::cpuArchitecture()},
            {"X-VESK-Platform", platformOf(system.editionType())}};
}

}  // namespace

const QMap<QString, QString>& storeHeaders() {
    static const QMap<QString, QString> headers = [] {
        const auto made = makeHeaders();
        QString text = QStringLiteral("default headers:\n");
        for (auto header = made.begin(); header != made.end(); ++header)
            text += header.key() + ": " + header.value() + '\n';
        qCDebug(VeskHttpClient::httpLog).noquote() << text;
        return made;
    }();
    return headers;
}

OpenAPI::VeskClientDefaultApi* makeStoreClient(const QString& baseUrl, QObject* parent) {
    auto* api = new OpenAPI::VeskClientDefaultApi(parent);
    QString url = baseUrl;
    if (url.isEmpty())
        url = settingsStore()->getOption(QStringLiteral("client.base_url.")).toString();
    if (url.isEmpty())
        url = BuildInfo::storeUrl().isEmpty() ? LocalStore::placeholder() : BuildInfo::storeUrl();
    else if (baseUrl.isEmpty())
        qWarning().noquote() << "Using test server: " + url;
    api->setNewServerForAllOperations(url);
    for (auto header = storeHeaders().begin(); header != storeHeaders().end(); ++header)
        api->addHeaders(header.key(), header.value());
    api->setTimeOut(TimeOutMs);
    if (VeskHttpClient::VeskClientApiLogger::isEnabled())
        new VeskHttpClient::VeskClientApiLogger(api, api);
    return api;
}
