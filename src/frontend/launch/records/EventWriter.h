#pragma once

#include <QStringList>
#include <string>

class QJsonObject;

/// Writes records to the desktop's event log through the first library of the list that can be loaded: the
/// system's, or the one installed with this program. Without a library, or without its function, records are
/// dropped. Thread-safe.
class EventWriter {
public:
    /// The writer of the process.
    static EventWriter& instance();

    explicit EventWriter(const QStringList& libraries);
    void writeEvent(const QJsonObject& record) const;

private:
    void (*m_write)(const std::string&) = nullptr;
};
