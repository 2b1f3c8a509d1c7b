#pragma once

#include <QString>

namespace Fenk {

/// Every Chinese character replaced by its reading in lower-case letters without tones, as one types it (v
/// for ü); all else stays. For searching and sorting. May be called from any thread; readings are remembered.
QString Chinese2Pinyin(const QString& words);

/// As above with only the first letter of each reading.
QString firstLetters(const QString& words);

}  // namespace Fenk
