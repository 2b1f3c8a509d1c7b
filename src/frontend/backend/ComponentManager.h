#pragma once

#include <QStringList>
#include <functional>

#include "backend/ServiceProxy.h"

class QJsonObject;

/// The client of the background service's component catalogue: keeps it in six lists, installs components for
/// all bottles and relays the progress of downloads. A component's name is a version's full name, such as
/// "lumora-wine10-stable"; kind is one of ComponentKind. Lives in the GUI thread and
/// never waits: the lists are empty until the service has been asked for them, and without the service.
class ComponentManager : public ServiceProxy<ComponentManager> {
    Q_OBJECT
    friend class Fenk::Singleton<ComponentManager>;

public:
    QStringList runnerInstalled;
    QStringList runnerSupported;
    QStringList dxvkInstalled;
    QStringList dxvkSupported;
    QStringList vkd3dInstalled;
    QStringList vkd3dSupported;

    /// Ends in the signal installed(), which the service sends. The optional handler gets the end of the call
    /// itself: a service that can't be reached sends no signal.
    void install(const QString& kind, const QString& name, QObject* context = nullptr,
                 const Handler& handler = {});

    /// Cancels one install(), which then ends as failed unless another caller wants the component, too. A
    /// failure is logged.
    void cancelInstall(const QString& kind, const QString& name);

    /// Asks the service for the lists and calls `then` at the end, whether there was an answer or not.
    void update(QObject* context, const std::function<void()>& then);

    /// Calls `then` when there are lists: at once, or after asking for them, whether there was an answer or
    /// not.
    void whenKnown(QObject* context, const std::function<void()>& then);

    /// Runners that are installed, then those that may be fetched.
    QStringList knownRunners() const;

Q_SIGNALS:
    // From the bus, under these names. success is 0 for a failure; sizes are bytes.
    void updateProgress(const QString& componentType, const QString& componentName, uint received_size,
                        uint total_size, const QString& status);
    void installed(int success, const QString& componentType, const QString& componentName,
                   const QString& errMsg);
    void refresh(const QString& components);

private:
    ComponentManager();

    void onRefresh(const QString& components);
    void read(const QJsonObject& catalogue);
};
