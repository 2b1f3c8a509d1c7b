#include "store/install/ManifestFacts.h"

#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/yaml.h>

#include <QRegularExpression>
#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace {

constexpr int MaximumDepth = 32;
constexpr int MaximumOpenBrackets = 64;  // those in texts count as well
constexpr int MaximumNodes = 50000;
constexpr int MaximumCommands = 1000;
const char DefaultWinePackage[] = "lumora-wine8-stable";

struct Refused : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Reads a text without building anything from it, and throws where it goes beyond a limit: a few bytes of
/// aliases can stand for billions of nodes.
class LimitCheck : public YAML::EventHandler {
public:
    void OnDocumentStart(const YAML::Mark&) override {}
    void OnDocumentEnd() override {}
    void OnNull(const YAML::Mark&, YAML::anchor_t) override { count(); }
    void OnAlias(const YAML::Mark&, YAML::anchor_t) override { throw Refused("it has an alias"); }
    void OnScalar(const YAML::Mark&, const std::string&, YAML::anchor_t, const std::string&) override {
        count();
    }
    void OnSequenceStart(const YAML::Mark&, const std::string&, YAML::anchor_t,
                         YAML::EmitterStyle::value) override {
        enter();
    }
    void OnSequenceEnd() override { --m_depth; }
    void OnMapStart(const YAML::Mark&, const std::string&, YAML::anchor_t,
                    YAML::EmitterStyle::value) override {
        enter();
    }
    void OnMapEnd() override { --m_depth; }

private:
    void count() {
        if (++m_nodes > MaximumNodes)
            throw Refused("it has too many entries");
    }
    void enter() {
        count();
        if (++m_depth > MaximumDepth)
            throw Refused("it is nested too deeply");
    }

    int m_nodes = 0;
    int m_depth = 0;
};

/// The parser looks far ahead after each bracket: thousands of open ones cost it seconds before the first is
/// reported.
void checkBrackets(const QByteArray& yaml) {
    int open = 0;
    for (const char letter : yaml) {
        if (letter == '[' || letter == '{')
            ++open;
        else if (letter == ']' || letter == '}')
            open = std::max(0, open - 1);
        if (open > MaximumOpenBrackets)
            throw Refused("it is nested too deeply");
    }
}

QString scalar(const YAML::Node& node) {
    return node.IsDefined() && node.IsScalar() ? QString::fromStdString(node.Scalar()) : QString();
}

/// The node below a map; undefined for anything else.
YAML::Node below(const YAML::Node& node, const char* key) {
    return node.IsDefined() && node.IsMap() ? node[key] : YAML::Node(YAML::NodeType::Undefined);
}

QVector<ManifestCommand> commandsOf(const YAML::Node& list) {
    QVector<ManifestCommand> commands;
    if (!list.IsDefined() || !list.IsSequence())
        return commands;
    for (const YAML::Node& entry : list) {
        if (commands.size() == MaximumCommands)
            throw Refused("it has too many commands");
        ManifestCommand command;
        command.program = scalar(below(entry, "Program"));
        command.description = scalar(below(entry, "Description"));
        const YAML::Node arguments = below(entry, "Arguments");
        if (arguments.IsDefined() && arguments.IsSequence()) {
            for (const YAML::Node& argument : arguments)
                command.arguments += scalar(argument);
        }
        commands += command;
    }
    return commands;
}

QByteArray sha256Of(const QString& text) {
    static const QRegularExpression digits("\\A[0-9a-fA-F]{64}\\z");
    return digits.match(text).hasMatch() ? text.toLatin1().toLower() : QByteArray();
}

/// What is no name of a package is as good as none.
QString packageName(const QString& text) {
    static const QRegularExpression name("\\A[A-Za-z0-9][A-Za-z0-9+._~-]{0,254}\\z");
    return name.match(text).hasMatch() ? text : DefaultWinePackage;
}

ManifestFacts factsOf(const YAML::Node& root) {
    if (!root.IsMap() || !root["Name"].IsDefined())
        throw Refused("it is no map with a Name");
    const YAML::Node package = root["DebInfo"];
    if (!package.IsDefined() || (!package.IsMap() && !package.IsNull()))
        throw Refused("it has no map DebInfo");
    ManifestFacts facts;
    facts.name = scalar(root["Name"]);
    facts.contributor = scalar(below(root["Contributor"], "Name"));
    facts.contributorEmail = scalar(below(root["Contributor"], "Email"));
    facts.winePackage = packageName(scalar(below(package, "wine_cmd")));
    facts.wineDependencies = scalar(below(package, "wine_deps"));
    facts.downloadUrl = scalar(root["downloadUrl"]);
    const YAML::Node setup = root["Setup"];
    facts.version = scalar(below(setup, "Version"));
    facts.setupSha256 = sha256Of(scalar(below(setup, "SHA256")));
    facts.setupBytes = qMax(qint64(0), scalar(below(setup, "Size")).toLongLong());
    facts.commands = commandsOf(below(root["Bottle"], "Commands"));
    return facts;
}

}  // namespace

std::optional<ManifestFacts> ManifestFacts::read(const QByteArray& yaml, QString* error) {
    try {
        if (yaml.size() > MaximumBytes)
            throw Refused("it is too large");
        checkBrackets(yaml);
        std::istringstream text(yaml.toStdString());
        LimitCheck check;
        YAML::Parser(text).HandleNextDocument(check);
        return factsOf(YAML::Load(yaml.toStdString()));
    } catch (const std::exception& failure) {
        *error = QString::fromUtf8(failure.what());
    }
    return {};
}
