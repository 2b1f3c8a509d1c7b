#include "launch/bottle/BottleChoice.h"

#include <QDebug>
#include <QFileInfo>
#include <QJsonDocument>

#include "backend/BottlesConfig.h"
#include "launch/bottle/PrivateBottleName.h"

QString chooseBottle(const QString& exePath, const QJsonObject& peInfo, const QString& md5) {
    if (exePath.isEmpty()) {
        qWarning() << "exe path is empty, donothing";
        return {};
    }
    const QString fileName = QFileInfo(exePath).fileName();
    const QJsonObject question{{"filename", fileName}, {"peinfo", peInfo}, {"md5sum", md5}};
    const BusResult reply = BottlesConfig::instance()->checkPublicBottles(
        QString::fromUtf8(QJsonDocument(question).toJson(QJsonDocument::Compact)));
    if (!reply.ok)
        qWarning().noquote() << "checkPublicBottles failed: " << reply.errorMessage;
    if (reply.ok && !reply.text.isEmpty()) {
        qInfo().noquote() << "Using public bottles: " << reply.text;
        return reply.text;
    }
    return privateBottleName(fileName, md5);
}
