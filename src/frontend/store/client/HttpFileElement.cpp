#include "store/client/HttpFileElement.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

namespace OpenAPI {

QByteArray HttpFileElement::readFile() const {
    QFile file(local_filename);
    // Opening a pipe would wait for its writer.
    if (!QFileInfo(local_filename).isFile() || !file.open(QIODevice::ReadOnly)) {
        qWarning() << "Error opening file" << local_filename;
        return {};
    }
    return file.readAll();
}

bool HttpFileElement::saveToFile(const QByteArray& bytes) const {
    QFile::remove(local_filename);
    QFile file(local_filename);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(bytes) != bytes.size() ||
        !file.flush()) {
        qWarning() << "Error creating file" << local_filename;
        return false;
    }
    return true;
}

}  // namespace OpenAPI
