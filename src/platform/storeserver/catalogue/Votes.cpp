#include "storeserver/catalogue/Votes.h"

#include <QSet>
#include <algorithm>
#include <tuple>

#include "storeserver/catalogue/SearchText.h"

namespace StoreServer {

namespace {

constexpr int NameLength = 50;  // of what clients send

}  // namespace

QString voteKey(const QString& name) {
    QString cut = name.left(NameLength);
    if (name.size() > NameLength && cut.at(NameLength - 1).isHighSurrogate())
        cut.chop(1);
    return SearchText::folded(cut).simplified();
}

Tally tallyOf(const QString& key, const QString& otherKey, const VotesByName& votes) {
    QVector<Vote> all = votes.value(key);
    if (otherKey != key)
        all += votes.value(otherKey);
    std::sort(all.begin(), all.end(), [](const Vote& left, const Vote& right) {
        return std::tie(right.timeMs, left.device) < std::tie(left.timeMs, right.device);
    });
    Tally tally;
    QHash<quint64, int> networks;
    QSet<quint64> devices;
    for (const Vote& vote : qAsConst(all)) {
        const bool isCounted = !devices.contains(vote.device) &&
                               (vote.network == 0 || ++networks[vote.network] <= MostOfNetwork);
        devices.insert(vote.device);
        if (isCounted)
            tally = {tally.sum + vote.score, tally.count + 1};
    }
    return tally;
}

}  // namespace StoreServer
