#pragma once

#include <QDBusConnection>
#include <QString>
#include <QStringList>

namespace TestSupport {

/// What an assistive tool sees of the programs of this session, and does there, over the accessibility bus. A
/// Qt program shows itself when QT_LINUX_ACCESSIBILITY_ALWAYS_ON is set in its environment.
class AccessibleTree {
public:
    AccessibleTree();
    ~AccessibleTree();

    /// The names of all objects that show, depth first.
    QStringList names() const;
    /// Their descriptions that are not empty.
    QStringList descriptions() const;
    /// Presses the showing, enabled button of that name, waiting for it. False when it does not come.
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
    bool isIn(uint states, const Node& node) const;

    QDBusConnection m_bus;
};

}  // namespace TestSupport
