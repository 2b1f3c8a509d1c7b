#pragma once

#include <QJsonObject>
#include <QList>
#include <QMetaType>
#include <QNetworkReply>

/// How an HttpRequest ended. `errorText` is for logs: English, or what the network layer says. It
/// contains no query and no user of an address.
struct HttpAnswer {
    enum class Error {
        None,
        Aborted,
        TimedOut,  ///< as a whole, or no byte for too long
        TooLarge,  ///< the answer is larger than the limit; `body` is empty
        Redirect,  ///< too many, or to an address that is not followed
        Status,    ///< the server answered with a status outside 200 to 299; `body` holds what it said
        Network,   ///< no connection, or it broke off
        File,      ///< the file to send cannot be read, so nothing was sent; or the target cannot be written
        Json       ///< set by readJson()
    };

    Error error = Error::None;
    QString errorText;  ///< empty if and only if there is no error
    QNetworkReply::NetworkError networkError = QNetworkReply::NoError;
    int status = 0;  ///< 0 when no answer came
    QList<QNetworkReply::RawHeaderPair> headers;
    QByteArray body;

    /// The body as a JSON object. Sets `error` and returns an empty object if the body is none, or if the
    /// request has failed already.
    QJsonObject readJson();
};

Q_DECLARE_METATYPE(HttpAnswer)
