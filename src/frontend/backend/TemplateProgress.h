#pragma once

#include <QObject>

/// Relays how far the background service is with the template of bottles that a caller waits for: the first
/// bottle on a Wine takes half a minute, later ones are copies. Lives in the GUI thread; starts no service.
class TemplateProgress : public QObject {
    Q_OBJECT
public:
    explicit TemplateProgress(QObject* parent);

Q_SIGNALS:
    /// From the bus, under this name. 0 to 100.
    void preparing(const QString& runner, int percent);
};
