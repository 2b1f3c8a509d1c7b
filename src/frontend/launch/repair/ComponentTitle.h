#pragma once

#include <QString>

/// The name of a catalogue component for users, such as "Visual C++ 2013" for vcredist2013; not translated.
/// An unknown component is returned as it is.
QString componentTitle(const QString& component);
