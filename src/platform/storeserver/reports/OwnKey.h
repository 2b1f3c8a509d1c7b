#pragma once

#include <QByteArray>
#include <QString>

namespace StoreServer {

/// The server's own key for UploadKeys, 64 hexadecimal digits in a file. Made only if there is no file: with
/// another key no device is recognised. Throws ReportError if the file cannot be read or has something else.
QByteArray ownKey(const QString& file);

}  // namespace StoreServer
