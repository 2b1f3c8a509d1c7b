#pragma once

#include <QString>
#include <functional>

/// Leaves the bottle of an application as it has to be when its set-up program has run, see PostRunStep.
struct SetupCleanUp {
    QString bottle;
    QString setupFile;
    QString name;  ///< of the entry, if the file is the program itself
    bool isSetUp = false;

    /// Returns at once; holds a PendingWork until the end, then calls `then` in the GUI thread. A bottle is
    /// deleted only when the service knows that it holds nothing; one that stays without a program gets the
    /// file as its entry. Without an answer of the service everything stays. GUI thread.
    void start(const std::function<void()>& then) const;

    /// Deletes a bottle in which nothing was installed, if there is one. Like start().
    static void deleteUnused(const QString& bottle);

private:
    void deleteBottle(const std::function<void()>& end) const;
    void addFile(const std::function<void()>& end) const;
};
