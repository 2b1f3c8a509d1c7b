#include "launch/inspection/ExeDetection.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

namespace {

/// Returns true if the value was decisive.
bool decide(const QJsonObject& value, ExeDetection* detection) {
    const QString type = value["type"].toString();
    const QString name = value["name"].toString();
    const QString version = value["version"].toString();
    if (type == "Archive" || type == "Installer") {
        detection->installer = true;
        return true;
    }
    if (type == "Compiler") {
        static const QRegularExpression basic(" Visual Basic.*6");
        detection->vb6 = basic.match(value["string"].toString()).hasMatch();
        return detection->vb6;
    }
    if (type == "Protector" && name == ".NET Reactor") {
        detection->dotnetVersion = version;
        return true;
    }
    if (type == "Library" && name.contains(".NET")) {
        static const QRegularExpression number("((\\d+\\.)*\\d+)");
        const QRegularExpressionMatch match = number.match(version);
        detection->dotnetVersion = match.hasMatch() ? match.captured(1) : version;
        return true;
    }
    return false;
}

}  // namespace

QJsonObject ExeDetection::document(QByteArray printed) {
    if (!printed.startsWith('{') && printed.contains('{'))
        printed.remove(0, printed.indexOf('{'));
    return QJsonDocument::fromJson(printed).object();
}

ExeDetection ExeDetection::classify(const QJsonObject& detects) {
    ExeDetection detection;
    for (const QJsonValue& detect : detects["detects"].toArray()) {
        for (const QJsonValue& value : detect.toObject()["values"].toArray()) {
            if (decide(value.toObject(), &detection))
                return detection;
        }
    }
    return detection;
}

QString ExeDetection::requiredComponent() const {
    if (dotnetVersion.startsWith('1') || dotnetVersion.startsWith('2'))
        return "dotnet20";
    if (dotnetVersion.startsWith('3'))
        return "dotnet35";
    if (!dotnetVersion.isEmpty())
        return "dotnet48";
    return vb6 ? "vbrun6" : QString();
}
