#include "manifest/YamlTree.h"

#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/yaml.h>

#include <QSet>
#include <QTextCodec>
#include <algorithm>
#include <cstring>
#include <istream>
#include <optional>
#include <stdexcept>
#include <streambuf>
#include <vector>

namespace {

constexpr int ShownCharacters = 60;

struct Refusal : std::runtime_error {
    explicit Refusal(const QString& sentence) : std::runtime_error(sentence.toStdString()) {}
};

QString at(const YAML::Mark& mark, const QString& sentence) {
    return QString("Line %1, column %2: %3").arg(mark.line + 1).arg(mark.column + 1).arg(sentence);
}

/// The text as a stream that refuses too many flow indicators between two events. The parser queues the
/// tokens of a list or map in brackets before it tells of any, so that two megabytes of them would take half
/// a gigabyte.
class BoundedText : public std::streambuf {
public:
    explicit BoundedText(const QByteArray& text) : m_text(text) {
        char* begin = m_text.data();
        setg(begin, begin, begin + m_text.size());
    }

    void onEvent() { m_indicators = 0; }

protected:
    std::streamsize xsgetn(char* to, std::streamsize count) override {
        const std::streamsize size = std::min<std::streamsize>(count, egptr() - gptr());
        memcpy(to, gptr(), size_t(size));
        gbump(int(size));
        m_indicators += int(std::count_if(to, to + size, YamlTree::isIndicator));
        if (m_indicators > YamlTree::MaximumIndicators)
            throw Refusal(QString("More than %1 brackets, commas and colons stand in one value; a file with "
                                  "so many must be Base64.")
                              .arg(YamlTree::MaximumIndicators));
        return size;
    }

private:
    QByteArray m_text;
    int m_indicators = 0;
};

/// Builds the tree from the parser's events. The innermost list or map that is being read is the last of
/// m_open.
class TreeBuilder : public YAML::EventHandler {
public:
    explicit TreeBuilder(BoundedText* text) : m_text(text) {}

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
        m_text->onEvent();
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
            throw Refusal(key.located(QString("\"%1\" is given twice.").arg(YamlTree::shown(key.text))));
        known->insert(key.text);
    }

    BoundedText* m_text;
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

QString YamlTree::shown(const QString& text) {
    QString shown = text.left(ShownCharacters);
    for (QChar& c : shown) {
        if (!c.isPrint() || c.isSurrogate())
            c = QChar('?');
    }
    return shown;
}

QString YamlTree::located(const QString& sentence) const {
    return QString("Line %1, column %2: %3").arg(line).arg(column).arg(sentence);
}

YamlTree YamlTree::parse(const QByteArray& text, QString* error) {
    *error = encodingFault(text);
    if (!error->isEmpty())
        return {};
    BoundedText bounded(text);
    TreeBuilder builder(&bounded);
    try {
        std::istream stream(&bounded);
        YAML::Parser parser(stream);
        const bool isRead = parser.HandleNextDocument(builder);
        TreeBuilder second(&bounded);
        if (!isRead)
            *error = "The text is empty.";
        else if (parser.HandleNextDocument(second))
            *error = "The text must be one YAML document, not several.";
    } catch (const YAML::Exception& failure) {
        *error = at(failure.mark, shown(QString::fromStdString(failure.msg)) + '.');
    } catch (const std::exception& failure) {
        *error = QString::fromUtf8(failure.what());
    }
    return error->isEmpty() ? builder.take() : YamlTree();
}
