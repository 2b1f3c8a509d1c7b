#include "RandomManifest.h"

#include "manifest/ManifestValues.h"

namespace {

using Type = Manifest::RegistryValue::Type;

class Source {
public:
    explicit Source(QRandomGenerator* random) : m_random(random) {}

    int number(int end) { return m_random->bounded(end); }
    bool coin() { return number(2) == 0; }

    /// Of what YAML finds hard: blanks at the ends, words with a meaning, quotes, and characters of all
    /// planes.
    QString text(bool mayBeEmpty = true) {
        static const QStringList words = {
            "null", "~",  "no", "1.10", "0x1F", "- a",        "# b", ": c", "'", "\"", "\\", "{}", "[",
            "&a",   "*a", "!t", "%TAG", "数",   "\U0001F377", "é",   " ",   "?", "|",  ">",  "@",  "`"};
        QString made;
        for (int i = number(4) + (mayBeEmpty ? 0 : 1); i > 0; --i)
            made += words[number(words.size())];
        return !mayBeEmpty && made.trimmed().isEmpty() ? QString("x") : made;
    }
    QString lines() { return coin() ? text() + '\n' + text() + "\n\t" : text(); }
    QByteArray bytes() {
        QByteArray made;
        for (int i = number(40); i > 0; --i)
            made += char(number(256));
        return made;
    }
    QString pick(const QStringList& from) { return from[number(from.size())]; }
    QString path(int unique) {
        return QString("c:\\Dir %1\\%2.ini").arg(unique).arg(pick({"a", "ü", "b c"}));
    }
    template <class Function>
    void repeat(Function function) {
        for (int i = number(4); i > 0; --i)
            function(i);
    }

private:
    QRandomGenerator* m_random;
};

Manifest::RegistryValue registryValue(Source& from) {
    Manifest::RegistryValue value;
    value.key =
        from.pick({"HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE"}) + "\\Software\\a]" + from.pick({"b", "數"});
    value.name = from.text();
    value.type = ManifestValues::RegistryTypes[from.number(7)].type;
    if (value.type == Type::Text || value.type == Type::ExpandText)
        value.texts = QStringList{from.lines()};
    else if (value.type == Type::Texts)
        from.repeat([&](int) { value.texts += from.text(false); });
    else if (value.type == Type::Number)
        value.number = quint64(from.number(INT_MAX)) * 2 + 1;
    else if (value.type == Type::LongNumber)
        value.number = ~quint64(from.number(INT_MAX));
    else if (value.type == Type::Bytes)
        value.bytes = from.bytes();
    return value;
}

void fillBottle(Source& from, Manifest::Bottle* bottle) {
    bottle->windows = from.pick({"", "win10", "winxp"});
    bottle->dxvk = from.pick({"", "dxvk-2.3"});
    bottle->vkd3d = from.pick({"", "vkd3d 1"});
    if (from.coin())
        bottle->parameters.dpi = 96 + from.number(385);
    bottle->parameters.renderer = from.pick({"", "gl", "vulkan", "gdi"});
    for (const QString& name : Manifest::Parameters::switchNames()) {
        if (from.coin())
            bottle->parameters.switches.insert(name, from.coin());
    }
    from.repeat([&](int i) {
        bottle->dllOverrides.insert(from.pick({"null", "*d3d9", "My Game.exe", "1"}),
                                    from.pick({"", "n", "n,b"}));
        bottle->fontReplacements.insert(from.text(false), from.text(false));
        bottle->dependencies += from.pick({"a", "b 1", "1.10"});
        bottle->registry += registryValue(from);
        bottle->files += Manifest::File{from.path(i), from.coin() ? from.lines().toUtf8() : from.bytes()};
        Manifest::Command command{from.pick({"regedit", "c:/a b/x.exe"}), {}, from.text()};
        from.repeat([&](int) { command.arguments += from.text(); });
        bottle->commands += command;
    });
}

}  // namespace

Manifest randomManifest(QRandomGenerator* random) {
    Source from(random);
    Manifest manifest;
    manifest.name = from.text(false);
    manifest.introduction = from.lines();
    manifest.category = from.text();
    manifest.downloadUrl = from.pick({"", "http://a.example/?x=1&y=#z"});
    manifest.packageSize = from.text();
    manifest.setup = {from.text(), from.pick({"", QString(64, 'a')}), from.number(100000) - 1, from.text()};
    manifest.contributor = {from.text(), from.text()};
    manifest.wineCommand = from.text();
    manifest.wineDeps = from.lines();
    fillBottle(from, &manifest.bottle);
    from.repeat([&](int) {
        Manifest::Program program{from.text(), from.pick({"a b.exe", "C:\\P\\x.exe"}), from.lines(), {}};
        from.repeat([&](int) { program.envs.insert(from.pick({"A", "null", "B C"}), from.lines()); });
        manifest.programs += program;
    });
    return manifest;
}
