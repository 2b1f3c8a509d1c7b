#include "launch/repair/RunnerChoice.h"

#include <QJsonObject>
#include <QRegularExpression>
#include <QVersionNumber>
#include <algorithm>

#include "core/base/WineNames.h"

namespace {

/// Orders by preference: the default and the staging runner, which other repairs use as well, so that only
/// one is downloaded; then plain Wine; then the newest version, and of one version the plainest build.
bool isBetter(const QString& one, const QString& other) {
    const auto rank = [](const QString& name) {
        if (name == WineNames::defaultRunner())
            return 0;
        if (name == WineNames::stagingRunner())
            return 1;
        return name.startsWith("wine-") ? 2 : 3;
    };
    if (rank(one) != rank(other))
        return rank(one) < rank(other);
    const auto version = [](const QString& name) {
        static const QRegularExpression number("\\d+(\\.\\d+)*");
        return QVersionNumber::fromString(number.match(name).captured());
    };
    if (version(one) != version(other))
        return version(one) > version(other);
    return one.size() != other.size() ? one.size() < other.size() : one < other;
}

QString bestOf(const QStringList& runners) {
    const auto best = std::min_element(runners.cbegin(), runners.cend(), isBetter);
    return best == runners.cend() ? QString() : *best;
}

}  // namespace

RunnerChoice RunnerChoice::of(const QJsonObject& runners) {
    return {runners.value("installed").toVariant().toStringList(),
            runners.value("supported").toVariant().toStringList()};
}

QString RunnerChoice::forNewBottle() const {
    return installed.isEmpty() ? WineNames::defaultRunner() : bestOf(installed);
}

QString RunnerChoice::forRepair() const {
    return bestOf(installed.isEmpty() ? supported : installed);
}
