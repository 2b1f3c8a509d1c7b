#pragma once

#include "backend/ServiceProxy.h"

/// The client of the background service's interface for repairs; holds no state. Lives in the GUI thread.
/// com.lumora.Manager.Repair.xml says what the answers hold. Questions fail after some seconds without an
/// answer.
class BottleRepair : public ServiceProxy<BottleRepair> {
    Q_OBJECT
    friend class Fenk::Singleton<BottleRepair>;

public:
    /// What the installation of the components would bring; the answer is an array.
    void describeDependencies(const QString& bottle, const QStringList& names, QObject* context,
                              const Handler& handler) {
        ask("describe", {bottle, QString("dependency"), names}, context, handler);
    }
    /// The same for a Wine.
    void describeRunner(const QString& bottle, const QString& name, QObject* context,
                        const Handler& handler) {
        ask("describe", {bottle, QString("runner"), QStringList{name}}, context, handler);
    }
    /// The answer is an array of names: the one that is being installed, then those that wait.
    void queuedDependencies(const QString& bottle, QObject* context, const Handler& handler) {
        ask("queuedDependencies", {bottle}, context, handler);
    }
    /// Aborts one installation, whether it runs or waits.
    void cancelDependency(const QString& bottle, const QString& name, const Handler& handler) {
        work("cancelDependency", {bottle, name}, this, handler);
    }
    /// Lets the service take an installer that the user has chosen. The path is absolute and leads through no
    /// link.
    void takeFile(const QString& bottle, const QString& dependency, const QString& path, QObject* context,
                  const Handler& handler) {
        work("takeFile", {bottle, dependency, path}, context, handler);
    }
    /// The answer is an object: "installed" and "supported", names of runners on which 32-bit programs run.
    void runnersFor32Bit(QObject* context, const Handler& handler) {
        ask("runnersFor32Bit", {}, context, handler);
    }
    /// What the bottle has lost of Wine's files: an object with "count" and some paths as "files".
    void damage(const QString& bottle, QObject* context, const Handler& handler) {
        ask("damage", {bottle}, context, handler);
    }
    /// Brings that back. The answer is an object: "ok", and "mended" (a number) or "error" and, where
    /// programs run in the bottle, their names as "busy".
    void renew(const QString& bottle, QObject* context, const Handler& handler) {
        work("renewBottle", {bottle}, context, handler);
    }
    /// The process stays until the service has answered. A failure is logged.
    void cancelRenewal(const QString& bottle);

private:
    BottleRepair() : ServiceProxy("Repair", LongTimeoutMs) {}

    void ask(const QString& method, const QVariantList& arguments, QObject* context, const Handler& handler);
    void work(const QString& method, const QVariantList& arguments, QObject* context, const Handler& handler);
};
