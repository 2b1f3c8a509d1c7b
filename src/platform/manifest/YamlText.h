#pragma once

#include <yaml-cpp/yaml.h>

#include <QByteArray>
#include <QJsonValue>
#include <QString>

/// Converts between YAML text, its node tree and JSON, for files that a user may have edited or a Windows
/// program may have written. Size, depth and number of nodes are limited, and a tree never shares nodes
/// (aliases are expanded).
namespace YamlText {

constexpr int MaximumBytes = 2 * 1024 * 1024;
constexpr int MaximumDepth = 64;
constexpr int MaximumNodes = 50000;

/// The type that a reader expects of a node. Anything takes the type from the node's own form; the others
/// convert what can be converted and give the empty value of the type for the rest.
enum class Kind { Anything, Text, Number, Flag, Object, TextMap, TextList };

/// Parses a text. On failure a null node and an error text.
YAML::Node parse(const QByteArray& text, QString* error);

/// The text of a tree. Strings are quoted, so that "1.10" or "no" are read back as strings.
QByteArray dump(const YAML::Node& node);

YAML::Node fromJson(const QJsonValue& value);
QJsonValue toJson(const YAML::Node& node, Kind kind = Kind::Anything);

/// The characters of a scalar; empty for everything else.
QString scalarText(const YAML::Node& node);

}  // namespace YamlText
