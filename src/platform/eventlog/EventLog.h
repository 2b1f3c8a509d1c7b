#pragma once

#include <string>

/// The interface of liblumora-event-log.so, for programs that look it up by name. It stores the records of
/// programs on this machine, in one file per program and user (see EventFile), and sends nothing anywhere.
/// The functions don't wait for the disk, don't throw, and can be called in any thread.
extern "C" {

/// Sets the program: a short name of letters, digits, "-" and "_", which becomes the file's name. Records are
/// dropped before the first call, and if `collect` is false.
__attribute__((visibility("default"))) void Initialize(const std::string& program, bool collect);

/// Adds one record, a JSON object as text. Drops anything else, records larger than 1 MiB, and records that
/// arrive while too many bytes are still waiting to be written.
__attribute__((visibility("default"))) void WriteEventLog(const std::string& record);
}
