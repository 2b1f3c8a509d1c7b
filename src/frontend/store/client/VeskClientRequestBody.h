#pragma once

#include <QByteArray>
#include <QString>

#include "store/client/VeskClientHttpRequestInput.h"

namespace OpenAPI {

/// What of a request follows from its layout.
struct VeskClientRequestBody {
    QString url;
    QByteArray body;
    QByteArray contentType;  ///< empty: none

    /// Reads the files; those that can't be read are left out.
    static VeskClientRequestBody of(const VeskClientHttpRequestInput& input);

    /// name="value", and the value in UTF-8 beside it when it isn't plain ASCII.
    static QString headerParameter(const QString& name, const QString& value);
};

}  // namespace OpenAPI
