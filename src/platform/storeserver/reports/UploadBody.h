#pragma once

#include <functional>

#include "storeserver/reports/ReportDirectory.h"
#include "storeserver/request/RequestBody.h"

namespace StoreServer {

/// Writes an upload to the directory of reports as it comes. What does not come whole, or is not of its kind,
/// leaves nothing behind.
class UploadBody : public RequestBody {
public:
    /// `file` is what the directory has begun for the key. `end` is called with the bytes that have come.
    UploadBody(ReportDirectory& directory, const QString& key, Fenk::OwnedFd file,
               std::unique_ptr<ReportRoom::Part> part, const std::function<void(qint64 bytes)>& end)
        : m_directory(directory), m_key(key), m_part(std::move(part)), m_file(std::move(file)), m_end(end) {}
    ~UploadBody() override;

    void write(std::string_view bytes) override;
    StoreAnswer answer(const StoreRequest& request) override;

private:
    int store(std::string_view bytes);

    ReportDirectory& m_directory;
    const QString m_key;
    std::unique_ptr<ReportRoom::Part> m_part;
    Fenk::OwnedFd m_file;
    std::function<void(qint64)> m_end;
    std::string m_firstBytes;
    qint64 m_bytes = 0;
    qint64 m_startedBytes = 0;  // that the system was told to write to the disk
    int m_error = 0;
    bool m_isKept = false;
};

}  // namespace StoreServer
