#pragma once

#include <QHash>
#include <QString>
#include <QVector>

namespace StoreServer {

/// What one device thinks of one application.
struct Vote {
    quint64 device = 0;   ///< a pseudonym
    quint64 network = 0;  ///< the same for where it was sent from; 0 if that is not known
    int score = 0;
    qint64 timeMs = 0;  ///< since 1970, when it came

    friend bool operator==(const Vote& left, const Vote& right) {
        return left.device == right.device && left.network == right.network && left.score == right.score &&
               left.timeMs == right.timeMs;
    }
};

/// By voteKey(); one vote for each device.
using VotesByName = QHash<QString, QVector<Vote>>;

/// The name of an application in the form by which its votes are found: cut as clients cut it, in one case,
/// width and spacing.
QString voteKey(const QString& name);

/// So many devices of one network count, those that voted last: inventing devices is easy, networks are not.
constexpr int MostOfNetwork = 20;

/// What counts of votes for either of two keys: the last vote of each device.
struct Tally {
    qint64 sum = 0;
    qint64 count = 0;

    /// From 1 to 5, 0 if there are no votes.
    int rating() const { return count > 0 ? int((2 * sum + count) / (2 * count)) : 0; }
};
Tally tallyOf(const QString& key, const QString& otherKey, const VotesByName& votes);

}  // namespace StoreServer
