#pragma once

#include <QString>

/// The three kinds of component that a bottle can use, as they go on the wire.
namespace ComponentKind {

inline QString runner() {
    return QStringLiteral("runner");
}
inline QString dxvk() {
    return QStringLiteral("dxvk");
}
inline QString vkd3d() {
    return QStringLiteral("vkd3d");
}

}  // namespace ComponentKind
