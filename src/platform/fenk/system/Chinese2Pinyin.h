#pragma once

#include <QString>

namespace Fenk {

/// Replaces each Chinese character by its pinyin in lower-case letters without tones (v for ü); other
/// characters stay. For searching and sorting. Thread-safe; readings are cached.
QString Chinese2Pinyin(const QString& words);

/// The same with only the first letter of each reading.
QString firstLetters(const QString& words);

}  // namespace Fenk
