#include "storeserver/catalogue/Votes.h"

#include "storeserver/catalogue/SearchText.h"

namespace StoreServer {

QString voteKey(const QString& name) {
    return SearchText::folded(name).simplified();
}

int ratingOf(const QString& english, const QString& chinese, const VotesByName& votes) {
    const QString first = voteKey(english);
    const QString second = voteKey(chinese);
    Votes all = votes.value(first);
    if (second != first) {
        const Votes more = votes.value(second);
        all = {all.sum + more.sum, all.count + more.count};
    }
    return all.count > 0 ? int((2 * all.sum + all.count) / (2 * all.count)) : 0;
}

}  // namespace StoreServer
