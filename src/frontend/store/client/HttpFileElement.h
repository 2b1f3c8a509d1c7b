#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QString>

namespace OpenAPI {

/// One file that goes to the store or came from it.
class HttpFileElement {
public:
    QString variable_name;
    QString local_filename;    ///< where it lies on this machine
    QString request_filename;  ///< what the other side calls it
    QString mime_type;

    bool isSet() const { return !local_filename.isEmpty() || !request_filename.isEmpty(); }
    /// Empty, with a log line, when the file can't be read.
    QByteArray readFile() const;
    /// Puts the bytes in the place of the file. False, with a log line, when that failed; an earlier file is
    /// gone then.
    bool saveToFile(const QByteArray& bytes) const;
};

}  // namespace OpenAPI

Q_DECLARE_METATYPE(OpenAPI::HttpFileElement)
