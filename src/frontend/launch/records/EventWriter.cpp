#include "launch/records/EventWriter.h"

#include <QDebug>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibrary>

#include "core/base/BuildInfo.h"
#include "core/base/Paths.h"

namespace {
const char LibraryName[] = "liblumora-event-log.so";
constexpr float KiBPerByte = 0.0009765625F;
constexpr float LargeKiB = 50.0F;
}  // namespace

EventWriter& EventWriter::instance() {
    static EventWriter writer({LibraryName, Paths::libDir() + "/" + LibraryName});
    return writer;
}

EventWriter::EventWriter(const QStringList& libraries) {
    for (const QString& name : libraries) {
        QLibrary library(name);
        if (!library.load())
            continue;
        using Initialize = void (*)(const std::string&, bool);
        if (const auto initialize = reinterpret_cast<Initialize>(library.resolve("Initialize")))
            initialize("cellarix", true);
        m_write = reinterpret_cast<decltype(m_write)>(library.resolve("WriteEventLog"));
        return;
    }
}

void EventWriter::writeEvent(const QJsonObject& record) const {
    if (!m_write)
        return;
    const std::string text = QJsonDocument(record).toJson(QJsonDocument::Compact).toStdString();
    const float size = float(text.size()) * KiBPerByte;
    qDebug().noquote().nospace() << "upSize: " << size << "K";
    if (size > LargeKiB)
        qWarning() << "logs is to big";
    if (BuildInfo::isRelease() && !BuildInfo::version().startsWith('@'))
        m_write(text);
    else
        qDebug() << "logs to up: " << record;
}
