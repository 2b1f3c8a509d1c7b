#include "store/view/AppStoreViewUtils.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDebug>
#include <QtConcurrentRun>

#include "launch/records/EventRecord.h"
#include "launch/records/EventWriter.h"
#include "probes/HardwareInfo.h"

namespace AppStoreViewUtils {

namespace {
constexpr int MaximumApps = 200;  ///< of one answer; 20 are asked for
constexpr int LongestLine = 512;
constexpr int MaxScore = 5;
}  // namespace

QList<StoreAppModelData> toModelData(const QList<OpenAPI::VeskClientAppInfo>& apps) {
    QList<StoreAppModelData> list;
    if (apps.size() > MaximumApps)
        qWarning() << "the store sent too many applications at once:" << apps.size();
    for (const auto& app : apps.mid(0, MaximumApps)) {
        if (app.isSet())
            list.append({app, {}, {}});
        else
            qWarning() << "the store sent an application without a single field";
    }
    return list;
}

ButtonState buttonState(bool isRunning, bool isInstalled, bool isInstalling) {
    if (isRunning)
        return ButtonState::Quit;
    if (isInstalled)
        return ButtonState::Run;
    return isInstalling ? ButtonState::Installing : ButtonState::Install;
}

QString scoreText(int score) {
    static const char* const texts[] = {
        QT_TRANSLATE_NOOP("AppStoreViewUtils", "No Ratings"),
        QT_TRANSLATE_NOOP("AppStoreViewUtils", "Cannot start after installation"),
        QT_TRANSLATE_NOOP("AppStoreViewUtils", "Only startup after installation"),
        QT_TRANSLATE_NOOP("AppStoreViewUtils", "Some functions are available"),
        QT_TRANSLATE_NOOP("AppStoreViewUtils", "Working well"),
        QT_TRANSLATE_NOOP("AppStoreViewUtils", "Nearly perfect operation"),
    };
    return QCoreApplication::translate("AppStoreViewUtils", texts[qBound(0, score, MaxScore)]);
}

QString oneLine(const QString& text) {
    return text.left(LongestLine).simplified();
}

QJsonObject event(const QDateTime& now, const QJsonObject& machine, const QString& action,
                  const QJsonObject& values) {
    QJsonObject record = EventRecord::common(now, machine);
    record.insert("action", action);
    for (auto value = values.begin(); value != values.end(); ++value)
        record.insert(value.key(), value.value());
    return record;
}

void writeEvent(const QString& action, const QJsonObject& values) {
    QtConcurrent::run([now = QDateTime::currentDateTime(), action, values] {
        EventWriter::instance().writeEvent(event(now, machineInfo(), action, values));
    });
}

const QList<SortField>& sortFields() {
    static const QList<SortField> fields = {
        {QT_TRANSLATE_NOOP("AppStoreCatelogWidget", "Updated time"), "update_time"},
        {QT_TRANSLATE_NOOP("AppStoreCatelogWidget", "App Installations"), "download_count"},
        {QT_TRANSLATE_NOOP("AppStoreCatelogWidget", "App Ratings"), "score"},
    };
    return fields;
}

}  // namespace AppStoreViewUtils
