#pragma once

#include <QDBusConnection>
#include <QString>
#include <QStringList>

namespace TestSupport {

/// Reads and presses the controls of all programs of this session over the accessibility bus. A Qt program
/// takes part when QT_LINUX_ACCESSIBILITY_ALWAYS_ON is set in its environment.
class AccessibleTree {
public:
    AccessibleTree();
    ~AccessibleTree();

    /// The names or descriptions, where they are not empty, of all visible objects, depth first.
    QStringList names() const { return properties("Name"); }
    QStringList descriptions() const { return properties("Description"); }
    /// Waits for a visible, enabled button of that name and presses it. False when there is none in time.
    bool press(const QString& name, int timeoutMs = 20000) const;

private:
    struct Node {
        QString service;
        QString path;
    };
    QVector<Node> children(const Node& parent) const;
    QVariantList call(const Node& node, const QString& interface, const QString& method,
                      const QVariantList& arguments = {}) const;
    QVector<Node> all() const;
    void collect(const Node& node, int depth, QVector<Node>* found) const;
    QString property(const Node& node, const QString& name) const;
    QStringList properties(const QString& name) const;
    bool isIn(uint states, const Node& node) const;

    QDBusConnection m_bus;
};

}  // namespace TestSupport
