#pragma once

#include <string>

/// What liblumora-event-log.so exports, for programs that look it up by name. It keeps the records of
/// programs on this machine, in one file for each program and user (see EventFile); it sends nothing
/// anywhere. Neither function waits for a disk or throws, and both may be called from any thread.
extern "C" {

/// Who writes: a short name of letters, digits, "-" and "_", which becomes the file's. With `collect` false,
/// and before the first call, records are dropped.
__attribute__((visibility("default"))) void Initialize(const std::string& program, bool collect);

/// Takes one record, the text of a JSON object. What is no object, is larger than 1 MiB, or comes while too
/// much is still waiting for the disk, is dropped.
__attribute__((visibility("default"))) void WriteEventLog(const std::string& record);
}
