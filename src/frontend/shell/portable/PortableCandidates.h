#pragma once

#include <QImage>
#include <QVector>

#include "shell/configuration/executables/ExecutableList.h"

/// The programs in a copied folder, the likely one first.
namespace PortableCandidates {

constexpr int MostFiles = 2000;  ///< that are looked at
constexpr int MostOffered = 40;
constexpr int MostExamined =
    12;  ///< whose version block and icon are read; each takes some tenths of a second

/// Programs below `directory`, whose Windows path is `folder`. Links are not followed. Nothing in the files
/// is trusted. Looks at files and waits for tools; for worker threads.
QVector<Executable> in(const QString& directory, const QString& folder);

}  // namespace PortableCandidates
