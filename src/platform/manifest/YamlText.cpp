#include "manifest/YamlText.h"

#include <yaml-cpp/yaml.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QTextCodec>

namespace YamlText {

namespace {

struct TooLarge : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Expands aliases with a limit: a few bytes of anchors can stand for billions of nodes, or for an endless
// tree.
YAML::Node copyBounded(const YAML::Node& node, int depth, int* nodes) {
    if (depth > MaximumDepth)
        throw TooLarge("it is nested too deeply");
    if (++*nodes > MaximumNodes)
        throw TooLarge("it has too many entries");
    YAML::Node copy(node.Type());
    if (node.IsScalar())
        copy = YAML::Node(node.Scalar());
    copy.SetTag(node.Tag());
    if (node.IsSequence()) {
        for (const YAML::Node& item : node)
            copy.push_back(copyBounded(item, depth + 1, nodes));
    } else if (node.IsMap()) {
        QSet<QByteArray> seen;
        for (const auto& entry : node) {
            if (entry.first.IsScalar()) {
                const QByteArray key = QByteArray::fromStdString(entry.first.Scalar());
                if (seen.contains(key))
                    continue;
                seen.insert(key);
            }
            copy.force_insert(copyBounded(entry.first, depth + 1, nodes),
                              copyBounded(entry.second, depth + 1, nodes));
        }
    }
    return copy;
}

void emitNode(YAML::Emitter& out, const YAML::Node& node) {
    const std::string& tag = node.Tag();
    if (!tag.empty() && tag != "?" && tag != "!")
        out << YAML::VerbatimTag(tag);
    switch (node.Type()) {
        case YAML::NodeType::Scalar:
            if (tag == "!")
                out << YAML::DoubleQuoted;
            out << node.Scalar();
            break;
        case YAML::NodeType::Sequence:
            out << YAML::BeginSeq;
            for (const YAML::Node& item : node)
                emitNode(out, item);
            out << YAML::EndSeq;
            break;
        case YAML::NodeType::Map:
            out << YAML::BeginMap;
            for (const auto& entry : node) {
                out << YAML::Key;
                emitNode(out, entry.first);
                out << YAML::Value;
                emitNode(out, entry.second);
            }
            out << YAML::EndMap;
            break;
        default:
            out << YAML::Null;
    }
}

YAML::Node keyNode(const QString& key) {
    static const QRegularExpression word("\\A[A-Za-z][A-Za-z0-9_]*\\z");
    YAML::Node node(key.toStdString());
    node.SetTag(word.match(key).hasMatch() ? "?" : "!");
    return node;
}

bool isPlain(const YAML::Node& node) {
    return node.Tag() == "?" || node.Tag().empty();
}

QJsonValue plainScalar(const QString& text) {
    static const QRegularExpression integer("\\A[-+]?[0-9]{1,17}\\z");
    static const QRegularExpression real("\\A[-+]?(\\.[0-9]+|[0-9]+(\\.[0-9]*)?)([eE][-+]?[0-9]{1,3})?\\z");
    if (text.isEmpty() || text == "~" || text == "null" || text == "Null" || text == "NULL")
        return QJsonValue::Null;
    if (text == "true" || text == "True" || text == "TRUE")
        return true;
    if (text == "false" || text == "False" || text == "FALSE")
        return false;
    if (integer.match(text).hasMatch())
        return text.toLongLong();
    bool ok = false;
    const double number = real.match(text).hasMatch() ? text.toDouble(&ok) : 0;
    return ok ? QJsonValue(number) : QJsonValue(text);
}

bool isYes(const QString& text) {
    const QString word = text.toLower();
    return word == "true" || word == "yes" || word == "on" || word == "1";
}

QJsonValue objectOf(const YAML::Node& node, Kind member) {
    QJsonObject object;
    for (const auto& entry : node) {
        if (entry.first.IsScalar())
            object.insert(scalarText(entry.first), toJson(entry.second, member));
    }
    return object;
}

QJsonValue arrayOf(const YAML::Node& node, Kind member) {
    QJsonArray array;
    for (const YAML::Node& item : node) {
        if (member == Kind::Anything || item.IsScalar())
            array.append(toJson(item, member));
    }
    return array;
}

}  // namespace

YAML::Node parse(const QByteArray& text, QString* error) {
    error->clear();
    if (text.size() > MaximumBytes) {
        *error = "it is too large";
        return {};
    }
    // Such a text would not be read back unchanged.
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(text.constData(), text.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0) {
        *error = "it is no UTF-8 text";
        return {};
    }
    try {
        int nodes = 0;
        return copyBounded(YAML::Load(text.toStdString()), 0, &nodes);
    } catch (const std::exception& failure) {
        *error = QString::fromUtf8(failure.what());
    }
    return {};
}

QByteArray dump(const YAML::Node& node) {
    YAML::Emitter out;
    emitNode(out, node);
    return QByteArray(out.c_str(), int(out.size())) + '\n';
}

YAML::Node fromJson(const QJsonValue& value) {
    switch (value.type()) {
        case QJsonValue::Bool:
            return YAML::Node(value.toBool());
        case QJsonValue::Double: {
            const double number = value.toDouble();
            const bool whole = qAbs(number) < 9e15 && number == double(qint64(number));
            YAML::Node node(
                (whole ? QString::number(qint64(number)) : QString::number(number, 'g', 17)).toStdString());
            node.SetTag("?");
            return node;
        }
        case QJsonValue::String: {
            YAML::Node node(value.toString().toStdString());
            node.SetTag("!");
            return node;
        }
        case QJsonValue::Array: {
            YAML::Node node(YAML::NodeType::Sequence);
            for (const QJsonValue& item : value.toArray())
                node.push_back(fromJson(item));
            return node;
        }
        case QJsonValue::Object: {
            YAML::Node node(YAML::NodeType::Map);
            const QJsonObject object = value.toObject();
            for (auto it = object.begin(); it != object.end(); ++it)
                node.force_insert(keyNode(it.key()), fromJson(it.value()));
            return node;
        }
        default:
            return YAML::Node(YAML::NodeType::Null);
    }
}

QJsonValue toJson(const YAML::Node& node, Kind kind) {
    switch (kind) {
        case Kind::Text:
            return scalarText(node);
        case Kind::Number: {
            const QJsonValue value = plainScalar(scalarText(node));
            return value.isDouble() ? value : QJsonValue(0);
        }
        case Kind::Flag:
            return isYes(scalarText(node));
        case Kind::Object:
            return node.IsMap() ? objectOf(node, Kind::Anything) : QJsonObject();
        case Kind::TextMap:
            return node.IsMap() ? objectOf(node, Kind::Text) : QJsonObject();
        case Kind::TextList:
            return node.IsSequence() ? arrayOf(node, Kind::Text) : QJsonArray();
        case Kind::Anything:
            break;
    }
    if (node.IsMap())
        return objectOf(node, Kind::Anything);
    if (node.IsSequence())
        return arrayOf(node, Kind::Anything);
    if (!node.IsScalar())
        return QJsonValue::Null;
    return isPlain(node) ? plainScalar(scalarText(node)) : QJsonValue(scalarText(node));
}

QString scalarText(const YAML::Node& node) {
    return node.IsScalar() ? QString::fromStdString(node.Scalar()) : QString();
}

}  // namespace YamlText
