#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include "store/client/HttpFileElement.h"

namespace OpenAPI {

/// The files inside an answer: its body as an attachment, or the parts of a multipart body. They are stored
/// in one directory; of the names that the server gives them only the last component counts.
class VeskClientAnswerFiles {
public:
    explicit VeskClientAnswerFiles(const QString& directory) : m_directory(directory) {}

    /// True when the headers say that the body is files and there is a directory for them; these are then
    /// stored, as far as they can be.
    bool take(const QByteArray& contentType, const QByteArray& disposition, const QByteArray& body);

    /// By the name of their field; an attachment has the name "attachment".
    QMap<QString, HttpFileElement> files() const { return m_files; }
    /// The texts of the parts that are no files.
    QMap<QString, QString> fields() const { return m_fields; }

private:
    void store(const QString& field, const QString& name, const QByteArray& contentType,
               const QByteArray& bytes);
    void takePart(const QByteArray& part);

    QString m_directory;
    QMap<QString, HttpFileElement> m_files;
    QMap<QString, QString> m_fields;
};

}  // namespace OpenAPI
