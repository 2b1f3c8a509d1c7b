#pragma once

#include "storeserver/reports/ReportDirectory.h"
#include "storeserver/request/RequestBody.h"

namespace StoreServer {

/// Writes an upload to the directory of reports as it comes. What does not come whole, or is not of its kind,
/// leaves nothing behind.
class UploadBody : public RequestBody {
public:
    /// `file` is what the directory has begun for the key.
    UploadBody(ReportDirectory& directory, const QString& key, Fenk::OwnedFd file,
               std::unique_ptr<ReportDirectory::Room> room)
        : m_directory(directory), m_key(key), m_room(std::move(room)), m_file(std::move(file)) {}
    ~UploadBody() override;

    void write(std::string_view bytes) override;
    StoreAnswer answer(const StoreRequest& request) override;

private:
    ReportDirectory& m_directory;
    const QString m_key;
    std::unique_ptr<ReportDirectory::Room> m_room;
    Fenk::OwnedFd m_file;
    std::string m_firstBytes;
    qint64 m_bytes = 0;
    bool m_isWritten = true;
    bool m_isKept = false;
};

}  // namespace StoreServer
