#include "storeserver/reports/UploadBody.h"

#include <QDebug>
#include <cerrno>

#include "storeserver/reports/ReportAnswer.h"
#include "storeserver/reports/UploadContent.h"

namespace StoreServer {

UploadBody::~UploadBody() {
    m_file.reset();
    if (!m_isKept)
        m_directory.dropUpload(m_key);
}

void UploadBody::write(std::string_view bytes) {
    if (m_firstBytes.size() < UploadContent::NeededBytes)
        m_firstBytes.append(bytes.substr(0, UploadContent::NeededBytes - m_firstBytes.size()));
    while (m_isWritten && !bytes.empty()) {
        const ssize_t count = ::write(m_file.get(), bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0) {
            qWarning().noquote() << "an upload cannot be written:" << qt_error_string(errno);
            m_isWritten = false;
            return;
        }
        m_bytes += count;
        bytes.remove_prefix(size_t(count));
    }
}

StoreAnswer UploadBody::answer(const StoreRequest&) {
    const char* suffix = UploadContent::suffixOf(m_firstBytes, UploadKeys::kindOf(m_key));
    if (m_isWritten && !suffix)
        return reportAnswer({415, "the file is not of the kind that was announced"});
    m_file.reset();
    m_isKept = m_isWritten && m_directory.keepUpload(m_key, suffix, m_bytes);
    return reportAnswer(m_isKept ? Refusal() : Refusal{507, "the file cannot be kept"});
}

}  // namespace StoreServer
