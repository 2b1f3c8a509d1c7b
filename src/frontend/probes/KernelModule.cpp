#include "probes/KernelModule.h"

#include <QStandardPaths>

#include "core/base/ToolProcess.h"

KernelModule kernelModule(const QString& name) {
    // The PATH of a user often has neither of these.
    static const QStringList administrators{"/usr/sbin", "/sbin"};
    QString tool = QStandardPaths::findExecutable("modinfo");
    if (tool.isEmpty())
        tool = QStandardPaths::findExecutable("modinfo", administrators);
    if (tool.isEmpty())
        return KernelModule::NoTool;
    const ToolProcess::Result result = ToolProcess::runQuietly(tool, {"-n", name});
    return result.succeeded()                           ? KernelModule::Present
           : result.state == ToolProcess::State::Exited ? KernelModule::Missing
                                                        : KernelModule::NoTool;
}
