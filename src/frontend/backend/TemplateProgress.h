#pragma once

#include <QObject>

/// Hears from the background service how far the template of bottles is that somebody waits for: the first
/// bottle on a Wine takes half a minute, later ones are copies. Lives in the GUI thread; starts no service.
class TemplateProgress : public QObject {
    Q_OBJECT
public:
    explicit TemplateProgress(QObject* parent);

Q_SIGNALS:
    /// From the bus, under this name. 0 to 100.
    void preparing(const QString& runner, int percent);
};
