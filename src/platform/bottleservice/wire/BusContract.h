#pragma once

#include <QHash>
#include <QList>
#include <QString>

/// A D-Bus interface as its XML file describes it. The service announces this file and checks every call
/// against it, so that contract and service cannot differ.
class BusContract {
public:
    struct Method {
        QString inSignature;
        QString outSignature;
    };

    /// Reads a file of the resources. An invalid file ends the process, since it is part of the program.
    static BusContract load(const QString& resource);

    QString interface() const { return m_interface; }

    /// The interface element, for introspection.
    QString introspection() const { return m_introspection; }

    bool hasMethod(const QString& name) const { return m_methods.contains(name); }
    Method method(const QString& name) const { return m_methods.value(name); }

    bool hasSignal(const QString& name) const { return m_signals.contains(name); }
    QString signalSignature(const QString& name) const { return m_signals.value(name); }

private:
    QString m_interface;
    QString m_introspection;
    QHash<QString, Method> m_methods;
    QHash<QString, QString> m_signals;
};
