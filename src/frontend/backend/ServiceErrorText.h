#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

/// Tells in the user's language why the background service has failed or refused something. The service sends
/// codes with arguments beside its English text; com.lumora.Manager.Repair.xml says how. A code that is not
/// known here, as of a newer service, is told in the service's English.
namespace ServiceErrorText {

/// Whole statements, one after the other. `english` stands in when nothing can be made of the reasons.
QString of(const QJsonArray& reasons, const QString& english);

/// The same for a result object with "reasons" and "error"; empty when it has neither.
QString of(const QJsonObject& result);

}  // namespace ServiceErrorText
