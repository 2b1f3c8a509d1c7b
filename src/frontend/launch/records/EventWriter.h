#pragma once

#include <QStringList>
#include <string>

class QJsonObject;

/// Hands records to the desktop's event log, the first library of the list that can be loaded: the system's,
/// otherwise the one that is installed beside this program. Without one, or without the function in it, a
/// record goes nowhere. May be used on any thread.
class EventWriter {
public:
    /// The process-wide writer.
    static EventWriter& instance();

    explicit EventWriter(const QStringList& libraries);
    void writeEvent(const QJsonObject& record) const;

private:
    void (*m_write)(const std::string&) = nullptr;
};
