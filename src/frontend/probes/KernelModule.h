#pragma once

#include <QString>

/// Whether the kernel of this machine has a module, as modinfo tells.
enum class KernelModule {
    NotAsked,
    Present,
    Missing,
    NoTool  ///< there is no modinfo, or it could not be run
};

/// Runs modinfo, which is found in PATH or where administrators have it, and waits for it at most 30 s. May
/// be called from any thread.
KernelModule kernelModule(const QString& name);
