#pragma once

#include <yaml-cpp/yaml.h>

#include <QByteArray>
#include <QJsonValue>
#include <QString>

/// Between YAML text, its node tree and JSON, for files that a user may have edited and a Windows program may
/// have written: size, depth and number of nodes are limited, and a tree never shares nodes (aliases are
/// written out).
namespace YamlText {

constexpr int MaximumBytes = 2 * 1024 * 1024;
constexpr int MaximumDepth = 64;
constexpr int MaximumNodes = 50000;

/// What a reader wants a node to be. Anything follows the node's own look, the others convert what can be
/// converted and give the kind's empty value for the rest.
enum class Kind { Anything, Text, Number, Flag, Object, TextMap, TextList };

/// The tree of a text. On failure a sentence in error and a null node.
YAML::Node parse(const QByteArray& text, QString* error);

/// The text of a tree. Strings are quoted, so that "1.10" or "no" stay strings when they are read again.
QByteArray dump(const YAML::Node& node);

YAML::Node fromJson(const QJsonValue& value);
QJsonValue toJson(const YAML::Node& node, Kind kind = Kind::Anything);

/// The characters of a scalar; empty for everything else.
QString scalarText(const YAML::Node& node);

}  // namespace YamlText
