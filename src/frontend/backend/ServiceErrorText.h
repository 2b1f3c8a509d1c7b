#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

/// Says in the user's language why the background service has failed or refused something. The service sends
/// codes with arguments beside its English text; com.lumora.Manager.Repair.xml describes them. For a code
/// that is not known here, as from a newer service, the English text is used.
namespace ServiceErrorText {

/// One text per reason, joined. Returns `english` when there are no reasons or one of them is malformed.
QString of(const QJsonArray& reasons, const QString& english);

/// The same for a result object with "reasons" and "error"; empty when it has neither.
QString of(const QJsonObject& result);

}  // namespace ServiceErrorText
