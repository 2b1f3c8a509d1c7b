#include "bottleservice/backup/BackupFile.h"

#include <nettle/sha2.h>

namespace BackupFile {

const char ListEntry[] = "cellarix-backup.json";
const char TemplatePrefix[] = "template/";
const char BottlePrefix[] = "bottle/";
const char ChecksumsEntry[] = "SHA256SUMS";

QStringList registries() {
    return {"system.reg", "user.reg", "userdef.reg"};
}

QString faultOf(archive* handle) {
    const QString text = QString::fromUtf8(archive_error_string(handle));
    return text.isEmpty() ? QString("it is damaged") : text;
}

struct Checksum::State {
    sha256_ctx context;
};

Checksum::Checksum() : m_state(std::make_unique<State>()) {
    sha256_init(&m_state->context);
}

Checksum::~Checksum() = default;

void Checksum::add(const void* data, size_t size) {
    sha256_update(&m_state->context, size, static_cast<const uint8_t*>(data));
}

QByteArray Checksum::hex() const {
    sha256_ctx context = m_state->context;
    QByteArray digest(SHA256_DIGEST_SIZE, 0);
    sha256_digest(&context, SHA256_DIGEST_SIZE, reinterpret_cast<uint8_t*>(digest.data()));
    return digest.toHex();
}

QByteArray checksumLine(const QByteArray& checksum, const QByteArray& name) {
    QByteArray shown = name;
    shown.replace('\\', "\\\\").replace('\n', "\\n").replace('\r', "\\r");
    return (shown == name ? QByteArray() : QByteArray("\\")) + checksum + "  " + shown + '\n';
}

}  // namespace BackupFile
