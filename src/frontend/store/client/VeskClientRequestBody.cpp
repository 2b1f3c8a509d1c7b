#include "store/client/VeskClientRequestBody.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <QUrl>
#include <algorithm>

namespace OpenAPI {

namespace {

QByteArray formText(const QMap<QString, QString>& vars) {
    QByteArrayList pairs;
    for (auto var = vars.begin(); var != vars.end(); ++var)
        pairs += QUrl::toPercentEncoding(var.key()) + '=' + QUrl::toPercentEncoding(var.value());
    return pairs.join('&');
}

QByteArray multipart(const VeskClientHttpRequestInput& input, const QByteArray& boundary) {
    using Body = VeskClientRequestBody;
    QByteArray body;
    for (auto var = input.vars.begin(); var != input.vars.end(); ++var)
        body += "--" + boundary + "\r\nContent-Disposition: form-data; " +
                Body::headerParameter("name", var.key()).toUtf8() + "\r\nContent-Type: text/plain\r\n\r\n" +
                var.value().toUtf8() + "\r\n";
    for (const HttpFileElement& file : input.files) {
        const QFileInfo info(file.local_filename);
        if (!info.isFile() || !info.isReadable())
            continue;
        const QString name = file.request_filename.isEmpty() ? info.fileName() : file.request_filename;
        const QString disposition = QString("Content-Disposition: form-data; %1; %2")
                                        .arg(Body::headerParameter("name", file.variable_name),
                                             Body::headerParameter("filename", name));
        body += "--" + boundary + "\r\n" + disposition.toUtf8() +
                "\r\nContent-Type: " + file.mime_type.toUtf8() +
                "\r\nContent-Transfer-Encoding: binary\r\n\r\n" + file.readFile() + "\r\n";
    }
    return body + "--" + boundary + "--";
}

}  // namespace

QString VeskClientRequestBody::headerParameter(const QString& name, const QString& value) {
    // A line break would begin a header of its own.
    QString quoted = value;
    quoted.remove('\r').remove('\n');
    const bool isPlain =
        std::all_of(quoted.begin(), quoted.end(), [](QChar c) { return c.unicode() < 0x80 && c != '"'; });
    if (isPlain)
        return QString("%1=\"%2\"").arg(name, quoted);
    const QString encoded = QString::fromLatin1(QUrl::toPercentEncoding(quoted));
    return QString("%1=\"%2\"; %1*=utf-8''%3").arg(name, QString(quoted).replace('"', "\\\""), encoded);
}

VeskClientRequestBody VeskClientRequestBody::of(const VeskClientHttpRequestInput& input) {
    VeskClientRequestBody made;
    made.url = input.url_str;
    if (input.var_layout == ADDRESS && !input.vars.isEmpty()) {
        made.url += (made.url.contains('?') ? "&" : "?") + QString::fromLatin1(formText(input.vars));
    } else if (input.var_layout == URL_ENCODED) {
        made.body = formText(input.vars);
        made.contentType = "application/x-www-form-urlencoded";
    } else if (input.var_layout == MULTIPART) {
        auto* random = QRandomGenerator::global();
        const QByteArray boundary = QString("__-----------------------%1%2")
                                        .arg(random->generate())
                                        .arg(random->generate())
                                        .toLatin1();
        made.body = multipart(input, boundary);
        made.contentType = "multipart/form-data; boundary=" + boundary;
    }
    if (!input.request_body.isEmpty()) {
        made.body = input.request_body;
        made.contentType = "application/json";
    }
    return made;
}

}  // namespace OpenAPI
