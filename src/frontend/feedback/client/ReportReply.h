#pragma once

#include <QJsonArray>
#include <QString>

struct HttpAnswer;

/// What the report service has answered: JSON with "status" (200 is success), "desc" and "datas".
struct ReportReply {
    bool ok = false;
    QString desc;  ///< the service's words, untrusted and of bounded length; empty when it gave none
    QJsonArray datas;

    /// Logs each failure.
    static ReportReply of(const HttpAnswer& answer);
};
