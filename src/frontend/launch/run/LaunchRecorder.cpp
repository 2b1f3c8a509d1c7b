#include "launch/run/LaunchRecorder.h"

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/PendingWork.h"
#include "backend/ServiceThreads.h"
#include "launch/records/AppBootingStateManager.h"
#include "launch/records/EventRecord.h"
#include "launch/records/EventWriter.h"
#include "launch/records/FailedStarts.h"
#include "launch/records/LaunchRecord.h"
#include "launch/run/ExeFileExecutor.h"
#include "launch/run/LaunchVerdict.h"
#include "launch/run/LaunchView.h"
#include "launch/run/LaunchedProgram.h"
#include "probes/HardwareInfo.h"

FailedStart LaunchRecorder::failedStart(const ExeFileExecutor& executor) const {
    const QString& reason = executor.diagnosis().reason;
    return {reason.isEmpty() ? LaunchVerdict::nothingFixedMessage(repaired) : reason, executor.components()};
}

void LaunchRecorder::writeRun(const LaunchedProgram& program) const {
    AppBootingStateManager::instance()->writeRunEvent(program.file.bottle, program.uuid, succeeded,
                                                      float(seconds),
                                                      {{"canceled", canceled ? "yes" : "no"}});
}

std::function<void()> LaunchRecorder::fileRecord(const LaunchedProgram& program, ExeFileExecutor& executor,
                                                 const LaunchView& view, const QString& runner) const {
    LaunchRecord record;
    record.succeeded = succeeded;
    record.exePath = program.file.exePath;
    record.fileInfo = executor.fileInfo();
    record.logLines = view.lastLines(EventRecord::LogLines);
    record.rating = rating;
    record.runner = runner;
    record.repaired = repaired;
    record.canceled = canceled;
    return [record, program, now = QDateTime::currentDateTime()] {
        PendingWork::instance()->run(ServiceThreads::inOrder(), [record, program, now]() mutable {
            program.addedUuid();  // waits for an entry that is being made, which counts
            const QJsonObject bottle = BottlesConfig::instance()->get(program.file.bottle);
            record.programs = BottleRecord::programs(bottle).size();
            if (!BottleRecord::runner(bottle).isEmpty())  // else the bottle was deleted
                record.runner = BottleRecord::runner(bottle);
            EventWriter::instance().writeEvent(record.toJson(EventRecord::common(now, machineInfo())));
        });
    };
}
