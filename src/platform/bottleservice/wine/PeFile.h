#pragma once

#include <QString>

/// The layout of PE files, as far as it tells whether one is whole.
namespace PeFile {

enum class State {
    Other,  ///< no PE file, or none that can be read
    Whole,
    CutShort  ///< its headers name more than the file holds
};

/// Follows links. Reads the headers only.
State stateOf(const QString& path);

}  // namespace PeFile
