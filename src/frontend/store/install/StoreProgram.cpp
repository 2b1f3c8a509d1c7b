#include "store/install/StoreProgram.h"

#include <QDebug>
#include <QJsonObject>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/ProgramRecord.h"
#include "store/records/VeskClientAppInfo.h"

namespace {

struct Search {
    QString appId;
    QString appName;
    QStringList bottles;  ///< still to be looked at
    std::function<void(const ProgramRef&)> take;
};

void look(Search search, QObject* context) {
    if (search.bottles.isEmpty()) {
        qWarning().noquote() << "Failed to get programId for appId:" << search.appId;
        search.take({});
        return;
    }
    const QString bottle = search.bottles.takeFirst();
    BottlesConfig::instance()->watchBottle(bottle, context, [=](const BusResult& result) {
        const QString uuid = StoreProgram::choose(BottleRecord::programs(result.object()), search.appName);
        if (uuid.isEmpty())
            look(search, context);
        else
            search.take({bottle, uuid});
    });
}

}  // namespace

QString StoreProgram::bottle(const QString& appIdText) {
    return appIdText.isEmpty() ? QString() : "program-" + appIdText;
}

QStringList StoreProgram::bottles(const OpenAPI::VeskClientAppInfo& app) {
    if (!app.is_appId_Valid())
        return {};
    QStringList names{bottle(QString::number(app.getAppId()))};
    if (!app.getAppInfoId().isEmpty())
        names << bottle(app.getAppInfoId());
    return names;
}

QString StoreProgram::choose(const QJsonObject& programs, const QString& appName) {
    for (auto program = programs.begin(); program != programs.end(); ++program) {
        if (ProgramRecord::name(program->toObject()) == appName)
            return program.key();
    }
    return programs.isEmpty() ? QString() : programs.begin().key();
}

void StoreProgram::find(const OpenAPI::VeskClientAppInfo& app, QObject* context,
                        const std::function<void(const ProgramRef&)>& take) {
    findIn(bottles(app), app.getAppName(), context, take);
}

void StoreProgram::findIn(const QStringList& bottles, const QString& appName, QObject* context,
                          const std::function<void(const ProgramRef&)>& take) {
    if (bottles.isEmpty())
        QMetaObject::invokeMethod(
            context, [take] { take({}); }, Qt::QueuedConnection);
    else
        look({bottles.first().section('-', 1), appName, bottles, take}, context);
}
