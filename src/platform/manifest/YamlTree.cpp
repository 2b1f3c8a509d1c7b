#include "manifest/YamlTree.h"

#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/yaml.h>

#include <QSet>
#include <QTextCodec>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace {

constexpr int ShownCharacters = 60;

struct Refusal : std::runtime_error {
    explicit Refusal(const QString& sentence) : std::runtime_error(sentence.toStdString()) {}
};

QString at(const YAML::Mark& mark, const QString& sentence) {
    return QString("Line %1, column %2: %3").arg(mark.line + 1).arg(mark.column + 1).arg(sentence);
}

/// Builds the tree from the parser's events. The innermost list or map that is being read is the last of
/// m_open.
class TreeBuilder : public YAML::EventHandler {
public:
    YamlTree take() { return std::move(m_root); }

    void OnDocumentStart(const YAML::Mark&) override {}
    void OnDocumentEnd() override {}
    void OnNull(const YAML::Mark& mark, YAML::anchor_t anchor) override {
        add(node(mark, YamlTree::Kind::Null, {}, anchor));
    }
    void OnAlias(const YAML::Mark& mark, YAML::anchor_t) override {
        throw Refusal(at(mark, "Aliases (*name) are not allowed."));
    }
    void OnAnchor(const YAML::Mark& mark, const std::string&) override {
        throw Refusal(at(mark, "Anchors (&name) are not allowed."));
    }
    void OnScalar(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                  const std::string& value) override {
        YamlTree scalar = node(mark, YamlTree::Kind::Text, tag, anchor);
        scalar.isQuoted = tag == "!";
        scalar.text = QString::fromStdString(value);
        add(std::move(scalar));
    }
    void OnSequenceStart(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                         YAML::EmitterStyle::value) override {
        open(node(mark, YamlTree::Kind::List, tag, anchor));
    }
    void OnSequenceEnd() override { close(); }
    void OnMapStart(const YAML::Mark& mark, const std::string& tag, YAML::anchor_t anchor,
                    YAML::EmitterStyle::value) override {
        open(node(mark, YamlTree::Kind::Map, tag, anchor));
    }
    void OnMapEnd() override { close(); }

private:
    struct Open {
        YamlTree node;
        std::optional<YamlTree> key;  ///< of a map, whose value is expected
        QSet<QString> keys;
    };

    YamlTree node(const YAML::Mark& mark, YamlTree::Kind kind, const std::string& tag,
                  YAML::anchor_t anchor) {
        if (anchor != YAML::NullAnchor)
            throw Refusal(at(mark, "Anchors (&name) are not allowed."));
        if (!tag.empty() && tag != "?" && tag != "!")
            throw Refusal(at(mark, "Tags (!name) are not allowed."));
        if (++m_nodes > YamlTree::MaximumNodes)
            throw Refusal(at(mark, "The text has too many entries."));
        YamlTree made;
        made.kind = kind;
        made.line = mark.line + 1;
        made.column = mark.column + 1;
        return made;
    }
    void open(YamlTree node) {
        if (int(m_open.size()) >= YamlTree::MaximumDepth)
            throw Refusal(node.located("The text is nested too deeply."));
        m_open.push_back({std::move(node), {}, {}});
    }
    void close() {
        YamlTree done = std::move(m_open.back().node);
        m_open.pop_back();
        add(std::move(done));
    }
    void add(YamlTree node) {
        if (m_open.empty()) {
            m_root = std::move(node);
            return;
        }
        Open& parent = m_open.back();
        if (parent.node.kind == YamlTree::Kind::List) {
            parent.node.items.append(std::move(node));
        } else if (parent.key) {
            parent.node.entries.append({std::move(*parent.key), std::move(node)});
            parent.key.reset();
        } else {
            checkKey(node, &parent.keys);
            parent.key = std::move(node);
        }
    }
    static void checkKey(const YamlTree& key, QSet<QString>* known) {
        if (key.kind != YamlTree::Kind::Text)
            throw Refusal(key.located("A key must be text."));
        if (known->contains(key.text))
            throw Refusal(key.located(QString("\"%1\" is given twice.").arg(key.text.left(ShownCharacters))));
        known->insert(key.text);
    }

    YamlTree m_root;
    std::vector<Open> m_open;
    int m_nodes = 0;
};

QString encodingFault(const QByteArray& text) {
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(text.constData(), text.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        return "The text is not UTF-8.";
    return text.contains('\0') ? QString("The text contains a null character.") : QString();
}

}  // namespace

QString YamlTree::located(const QString& sentence) const {
    return QString("Line %1, column %2: %3").arg(line).arg(column).arg(sentence);
}

YamlTree YamlTree::parse(const QByteArray& text, QString* error) {
    *error = encodingFault(text);
    if (!error->isEmpty())
        return {};
    TreeBuilder builder;
    try {
        std::istringstream stream(text.toStdString());
        YAML::Parser parser(stream);
        const bool isRead = parser.HandleNextDocument(builder);
        TreeBuilder second;
        if (!isRead)
            *error = "The text is empty.";
        else if (parser.HandleNextDocument(second))
            *error = "The text must be one YAML document, not several.";
    } catch (const YAML::Exception& failure) {
        *error = at(failure.mark, QString::fromStdString(failure.msg) + '.');
    } catch (const std::exception& failure) {
        *error = QString::fromUtf8(failure.what());
    }
    return error->isEmpty() ? builder.take() : YamlTree();
}
