#include "packaging/config/PackageFiles.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>

#include "fenk/system/RegularFile.h"

namespace {
constexpr qint64 MaximumBytes = 16 * 1024 * 1024;  // programs of the bottle can write there
}

bool PackageFiles::exists(const char* name) const {
    return QFileInfo::exists(m_bottleDir + name);
}

QJsonObject PackageFiles::read(const char* name) const {
    QFile file(m_bottleDir + name);
    if (!Fenk::RegularFile::open(file, file.fileName()) || file.size() > MaximumBytes) {
        qWarning().nospace().noquote() << "Failed to open config file: " << file.fileName();
        return {};
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject())
        qWarning().noquote() << "not a JSON object:" << file.fileName() << error.errorString();
    return document.object();
}

bool PackageFiles::write(const char* name, const QJsonObject& object) const {
    const QString path = m_bottleDir + name;
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    const QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Indented);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit()) {
        qInfo().nospace().noquote() << "Saved cfg file: " << path;
        return true;
    }
    qWarning().nospace().noquote() << "Failed to save file: " << path << ": " << file.errorString();
    return false;
}
