#include "packaging/config/PackageMaintainer.h"

#include <pwd.h>
#include <unistd.h>

#include <QRegularExpression>
#include <array>

#include "core/base/SettingsStore.h"

namespace {

const char NameKey[] = "basic.deb_maintainer.name";
const char AddressKey[] = "basic.deb_maintainer.address";
const char GivenKey[] = "basic.deb_maintainer.is_given";
const char NameVariable[] = "DEBFULLNAME";
const char AddressVariable[] = "DEBEMAIL";

QString valueOf(const char* key, const char* variable) {
    const QString value = settingsStore()->getOption(key).toString();
    return value.isEmpty() && !PackageMaintainer::isGiven() ? qEnvironmentVariable(variable) : value;
}

}  // namespace

PackageMaintainer PackageMaintainer::current() {
    return {valueOf(NameKey, NameVariable), valueOf(AddressKey, AddressVariable)};
}

bool PackageMaintainer::isGiven() {
    return settingsStore()->getOption(GivenKey).toBool();
}

void PackageMaintainer::remember() const {
    settingsStore()->setOption(NameKey, name);
    settingsStore()->setOption(AddressKey, address);
    settingsStore()->setOption(GivenKey, true);
}

QString PackageMaintainer::accountName() {
    passwd account = {};
    passwd* found = nullptr;
    std::array<char, 16384> buffer;
    if (::getpwuid_r(::getuid(), &account, buffer.data(), buffer.size(), &found) != 0 || !found)
        return {};
    return QString::fromLocal8Bit(found->pw_gecos).section(',', 0, 0).trimmed();
}

bool PackageMaintainer::isAddress(const QString& text) {
    static const QRegularExpression address(R"(\A[!-;=?A-~]+@[!-;=?A-~]+\z)");
    return address.match(text).hasMatch();
}

QProcessEnvironment PackageMaintainer::environment() {
    const PackageMaintainer maintainer = current();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(NameVariable, maintainer.name);
    environment.insert(AddressVariable, maintainer.address);
    return environment;
}
