#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "bottleservice/bottles/BottleYaml.h"

/// The directory of all bottles: finds them, reads and writes their bottle.yml. The only place where a
/// bottle's name becomes a path. A bottle is a real directory (no link) with a bottle.yml. When that is a
/// link, a pipe or a directory, it is not opened and the bottle counts as damaged: it is listed and can be
/// deleted, but not loaded. A value that can be copied into threads. All functions answer at once.
class BottleStore {
public:
    /// The bottles lie in "bottles" below this directory.
    explicit BottleStore(const QString& dataDir);

    enum class State { Missing, Present, Foreign };

    QString root() const { return m_root; }
    /// Where launch scripts record what they have started (LaunchRecord).
    QString runningDir() const { return m_dataDir + "/running"; }

    /// The names of all bottles, sorted.
    QStringList names() const;

    /// Foreign is a link, a file or a directory that is no bottle. The name must have passed
    /// BottleName::check().
    State state(const QString& name) const;
    QString pathOf(const QString& name) const { return m_root + '/' + name; }

    /// Returns an error text when there is no such bottle, empty when there is.
    QString check(const QString& name) const;

    /// The settings of a bottle that exists; nothing, with an error text, when they cannot be read.
    std::optional<BottleYaml> load(const QString& name, QString* error) const;

    /// The same for a directory that does not have its final name yet.
    static std::optional<BottleYaml> loadFrom(const QString& directory, const QString& shownName,
                                              QString* error);

    /// The name of the bottle's runner; empty when the settings cannot be read.
    QString runnerOf(const QString& name) const;

    /// Replaces bottle.yml completely or not at all. False with an error text on failure.
    bool save(const QString& name, const BottleYaml& settings, QString* error) const;

    /// The same for a directory that does not have its final name yet.
    static bool saveTo(const QString& directory, const BottleYaml& settings, QString* error);

private:
    QStringList namesIn(const QString& directory, const QString& prefix) const;

    QString m_dataDir;
    QString m_root;
};
