#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "bottleservice/bottles/BottleYaml.h"

/// The directory of all bottles: finds them, reads and writes their bottle.yml. The only place where a
/// bottle's name becomes a path. A bottle is a real directory (never a link) with a bottle.yml, which
/// need not be a file: a link, a pipe or a directory of that name is never followed or opened, and such a
/// bottle is damaged. It is listed and can be deleted, but not loaded. Everything else beside the bottles is
/// left alone. All functions answer at once.
class BottleStore {
public:
    /// The bottles lie in "bottles" below this directory.
    explicit BottleStore(const QString& dataDir);

    enum class State { Missing, Present, Foreign };

    QString root() const { return m_root; }
    /// Where the launch script tells what it has started.
    QString runningDir() const { return m_dataDir + "/running"; }

    /// The names of all bottles, sorted.
    QStringList names() const;

    /// Foreign is a link, a file or a directory that is no bottle. The name must have passed
    /// BottleName::check.
    State state(const QString& name) const;
    QString pathOf(const QString& name) const { return m_root + '/' + name; }

    /// A sentence that says why there is no such bottle; empty if there is one.
    QString check(const QString& name) const;

    /// The settings of a bottle that exists; empty with a sentence in error when they cannot be read.
    std::optional<BottleYaml> load(const QString& name, QString* error) const;

    /// The name of the bottle's runner; empty when the settings cannot be read.
    QString runnerOf(const QString& name) const;

    /// Replaces bottle.yml at once or not at all. True or a sentence in error.
    bool save(const QString& name, const BottleYaml& settings, QString* error) const;

    /// The same for a directory that is not yet in its place.
    static bool saveTo(const QString& directory, const BottleYaml& settings, QString* error);

private:
    QStringList namesIn(const QString& directory, const QString& prefix) const;

    QString m_dataDir;
    QString m_root;
};
