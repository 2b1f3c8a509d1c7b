#include "support/AccessibleTree.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include "support/ChildProcess.h"

namespace TestSupport {

namespace {

const char Accessible[] = "org.a11y.atspi.Accessible";
const char Action[] = "org.a11y.atspi.Action";
constexpr uint EnabledState = 1U << 8;
constexpr uint ShowingState = 1U << 25;
constexpr int DepthLimit = 40;
constexpr int CallMs = 2000;

QString accessibilityBus() {
    const QDBusMessage reply = QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress"));
    return reply.arguments().value(0).toString();
}

}  // namespace

AccessibleTree::AccessibleTree()
    : m_bus(QDBusConnection::connectToBus(accessibilityBus(), "accessible-tree")) {}

AccessibleTree::~AccessibleTree() {
    QDBusConnection::disconnectFromBus("accessible-tree");
}

QVariantList AccessibleTree::call(const Node& node, const QString& interface, const QString& method,
                                  const QVariantList& arguments) const {
    QDBusMessage message = QDBusMessage::createMethodCall(node.service, node.path, interface, method);
    message.setArguments(arguments);
    return m_bus.call(message, QDBus::Block, CallMs).arguments();
}

QVector<AccessibleTree::Node> AccessibleTree::children(const Node& parent) const {
    QVector<Node> found;
    const QVariant answer = call(parent, Accessible, "GetChildren").value(0);
    if (!answer.canConvert<QDBusArgument>())
        return found;
    const auto list = answer.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString service;
        QDBusObjectPath path;
        list.beginStructure();
        list >> service >> path;
        list.endStructure();
        found.append({service, path.path()});
    }
    list.endArray();
    return found;
}

QString AccessibleTree::property(const Node& node, const QString& name) const {
    const QVariant answer = call(node, "org.freedesktop.DBus.Properties", "Get", {Accessible, name}).value(0);
    return answer.value<QDBusVariant>().variant().toString();
}

bool AccessibleTree::isIn(uint states, const Node& node) const {
    const QVariant answer = call(node, Accessible, "GetState").value(0);
    if (!answer.canConvert<QDBusArgument>())
        return false;
    QList<uint> words;
    answer.value<QDBusArgument>() >> words;
    return (words.value(0) & states) == states;
}

void AccessibleTree::collect(const Node& node, int depth, QVector<Node>* found) const {
    for (const Node& child : children(node)) {
        if (depth > 0 && !isIn(ShowingState, child))
            continue;
        found->append(child);
        if (depth < DepthLimit)
            collect(child, depth + 1, found);
    }
}

QVector<AccessibleTree::Node> AccessibleTree::all() const {
    QVector<Node> nodes;
    collect({"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"}, 0, &nodes);
    return nodes;
}

QStringList AccessibleTree::properties(const QString& name) const {
    QStringList values;
    for (const Node& node : all())
        values << property(node, name);
    values.removeAll(QString());
    return values;
}

bool AccessibleTree::press(const QString& name, int timeoutMs) const {
    const auto isPressed = [&] {
        for (const Node& node : all()) {
            if (property(node, "Name") == name && isIn(EnabledState, node) &&
                call(node, Action, "DoAction", {0}).value(0).toBool())
                return true;
        }
        return false;
    };
    return waitUntil(isPressed, timeoutMs);
}

}  // namespace TestSupport
