#pragma once

#include <QJsonObject>
#include <memory>
#include <optional>

#include "bottleservice/backup/BackupFile.h"
#include "bottleservice/jobs/Job.h"
#include "bottleservice/jobs/NewBottleTools.h"
#include "bottleservice/portable/PortableSource.h"
#include "bottleservice/wine/Runners.h"

class StagedBottle;

/// Makes a bottle of its own, on the default runner or on one that runs its 32-bit programs, and copies a
/// portable program into its "Program Files". The service does it, since only here a bottle can be made as a
/// whole or not at all: it is filled in a hidden directory, which is removed on failure and by the next
/// service after a kill, and is renamed last. A name that is taken gets a number. Answers with JSON: {"ok",
/// "bottle": its name, "path": its directory, "folder": Windows path of the copy, "program": id of its likely
/// program, "leftOut": what was not copied}. That program is entered, so that the library leads to the copy
/// whatever becomes of the client.
class PortableBottleJob : public Job {
    Q_OBJECT

public:
    PortableBottleJob(const QString& source, NewBottleTools tools, Reply reply);

    void start() override;
    void cancel() override;

private:
    void onSurveyed(const Reason& reason);
    std::optional<Runner> chooseRunner() const;
    void copy(const Reason& reason);
    void place(const Reason& reason);
    QString freeName() const;
    void fail(const Reason& reason);

    /// What the worker thread fills.
    struct Work {
        std::unique_ptr<PortableSource> source;
        QJsonObject program;  ///< the likely one
    };

    const QString m_source;
    NewBottleTools m_tools;
    std::shared_ptr<Work> m_work = std::make_shared<Work>();
    StagedBottle* m_staged = nullptr;
};
