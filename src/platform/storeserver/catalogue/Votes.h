#pragma once

#include <QHash>
#include <QString>

namespace StoreServer {

/// What users think of one application: the last score of each device.
struct Votes {
    qint64 sum = 0;
    qint64 count = 0;

    friend bool operator==(const Votes& left, const Votes& right) {
        return left.sum == right.sum && left.count == right.count;
    }
};

/// By voteKey().
using VotesByName = QHash<QString, Votes>;

/// The name of an application in the form by which its votes are found: in one case, width and spacing.
QString voteKey(const QString& name);

/// The average, from 1 to 5, of the votes for either name; 0 if there are none.
int ratingOf(const QString& english, const QString& chinese, const VotesByName& votes);

}  // namespace StoreServer
