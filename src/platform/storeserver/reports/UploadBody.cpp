#include "storeserver/reports/UploadBody.h"

#include <fcntl.h>
#include <unistd.h>

#include <QDebug>
#include <cerrno>

#include "storeserver/reports/ReportAnswer.h"
#include "storeserver/reports/UploadContent.h"

namespace StoreServer {

namespace {

constexpr qint64 StartedBytes = 1 << 20;

}  // namespace

UploadBody::~UploadBody() {
    m_file.reset();
    if (!m_isKept)
        m_directory.dropUpload(m_key);
    m_end(m_bytes);
}

void UploadBody::write(std::string_view bytes) {
    if (m_firstBytes.size() < UploadContent::NeededBytes)
        m_firstBytes.append(bytes.substr(0, UploadContent::NeededBytes - m_firstBytes.size()));
    m_bytes += qint64(bytes.size());
    if (m_error != 0)
        return;
    m_error = m_part->use(qint64(bytes.size())) ? store(bytes) : ENOSPC;
    if (m_error != 0)
        qWarning().noquote() << "an upload cannot be written:" << qt_error_string(m_error);
}

int UploadBody::store(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_file.get(), bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR)
            return errno;
        bytes.remove_prefix(count < 0 ? 0 : size_t(count));
    }
    // Without waiting, so that little is left to wait for at the end.
    if (m_bytes - m_startedBytes >= StartedBytes) {
        ::sync_file_range(m_file.get(), m_startedBytes, m_bytes - m_startedBytes, SYNC_FILE_RANGE_WRITE);
        m_startedBytes = m_bytes;
    }
    return 0;
}

StoreAnswer UploadBody::answer(const StoreRequest&) {
    const char* suffix = UploadContent::suffixOf(m_firstBytes, UploadKeys::kindOf(m_key));
    if (m_error == 0 && !suffix)
        return reportAnswer({415, "the file is not of the kind that was announced"});
    if (m_error == 0 && ::fdatasync(m_file.get()) != 0)
        m_error = errno;
    m_file.reset();
    if (m_error == 0) {
        m_error = m_directory.keepUpload(m_key, suffix, m_bytes, *m_part);
        m_isKept = m_error == 0;
    }
    return reportAnswer(m_isKept ? Refusal() : Refusal{statusOf(m_error), "the file cannot be kept"});
}

}  // namespace StoreServer
