#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include "store/client/HttpFileElement.h"

namespace OpenAPI {

/// Where the form fields of a request stand.
enum VeskClientHttpRequestVarLayout { NOT_SET, ADDRESS, URL_ENCODED, MULTIPART };

/// One request to the store.
class VeskClientHttpRequestInput {
public:
    explicit VeskClientHttpRequestInput(const QString& url = {},
                                        const QString& method = QStringLiteral("GET"))
        : http_method(method), url_str(url) {}

    void add_var(const QString& key, const QString& value) { vars[key] = value; }
    void add_file(const HttpFileElement& file) { files.append(file); }

    QString http_method;
    QString url_str;
    QMap<QString, QString> vars;  ///< form fields
    QList<HttpFileElement> files;
    QByteArray request_body;
    QMap<QString, QString> headers;
    QStringList header_order;  ///< these go out first; all others follow by their names
    VeskClientHttpRequestVarLayout var_layout = NOT_SET;
};

}  // namespace OpenAPI
