#pragma once

#include <QImage>
#include <QVector>
#include <atomic>

#include "shell/configuration/executables/ExecutableList.h"

/// The programs in a copied folder, the likely one first.
namespace PortableCandidates {

constexpr int MostFiles = 2000;  ///< that are looked at
constexpr int MostOffered = 40;
constexpr int MostExamined =
    12;  ///< whose version block and icon are read; each takes some tenths of a second

/// Where the copy lies.
struct Place {
    QString bottlePath;
    QString folder;  ///< Windows path of the copy
};

/// Programs in the copy, then those of the bottle's `entries` that are not among them; a program that has an
/// entry gets its id. Links are not followed. Nothing in the files is trusted. Looks at files and waits for
/// tools, until `stop` is true; for worker threads.
QVector<Executable> in(const Place& place, const QJsonObject& entries, const std::atomic_bool& stop);

}  // namespace PortableCandidates
