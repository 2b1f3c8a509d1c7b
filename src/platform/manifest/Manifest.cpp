#include "manifest/Manifest.h"

#include <tuple>

const char Manifest::DefaultWineCommand[] = "lumora-wine8-stable";

const QStringList& Manifest::Parameters::switchNames() {
    static const QStringList names = {"cpu_rendering", "discrete_gpu", "mem_optimized", "ntsync"};
    return names;
}

namespace {

auto tied(const Manifest::SetupFile& it) {
    return std::tie(it.version, it.sha256, it.size, it.kind);
}
auto tied(const Manifest::Contributor& it) {
    return std::tie(it.name, it.email);
}
auto tied(const Manifest::RegistryValue& it) {
    return std::tie(it.key, it.name, it.type, it.texts, it.number, it.bytes);
}
auto tied(const Manifest::File& it) {
    return std::tie(it.path, it.content);
}
auto tied(const Manifest::Command& it) {
    return std::tie(it.program, it.arguments, it.description);
}
auto tied(const Manifest::Program& it) {
    return std::tie(it.name, it.path, it.arguments, it.envs);
}
auto tied(const Manifest::Parameters& it) {
    return std::tie(it.dpi, it.renderer, it.switches);
}

template <class Item>
bool same(const QVector<Item>& one, const QVector<Item>& other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](const Item& a, const Item& b) { return tied(a) == tied(b); });
}

bool same(const Manifest::Bottle& one, const Manifest::Bottle& other) {
    const auto plain = [](const Manifest::Bottle& it) {
        return std::tie(it.windows, it.dxvk, it.vkd3d, it.dllOverrides, it.fontReplacements, it.dependencies);
    };
    return plain(one) == plain(other) && tied(one.parameters) == tied(other.parameters) &&
           same(one.registry, other.registry) && same(one.files, other.files) &&
           same(one.commands, other.commands);
}

}  // namespace

bool operator==(const Manifest& one, const Manifest& other) {
    const auto plain = [](const Manifest& it) {
        return std::tie(it.name, it.introduction, it.category, it.downloadUrl, it.packageSize, it.wineCommand,
                        it.wineDeps);
    };
    return plain(one) == plain(other) && tied(one.setup) == tied(other.setup) &&
           tied(one.contributor) == tied(other.contributor) && same(one.bottle, other.bottle) &&
           same(one.programs, other.programs);
}
