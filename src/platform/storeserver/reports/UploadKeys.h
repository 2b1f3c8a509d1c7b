#pragma once

#include <QByteArray>
#include <QString>

namespace StoreServer {

enum class UploadKind { Image, Archive };

/// Makes names of uploads that nobody can guess and that belong to one device, and addresses at which one
/// upload may be put for a while. Everything about them lies in themselves, under a key of the server's own,
/// so that nothing need be remembered. For any thread.
class UploadKeys {
public:
    static constexpr qint64 LifeMs = 10 * 60 * 1000;  ///< of an address

    explicit UploadKeys(const QByteArray& ownKey) : m_ownKey(ownKey) {}

    QString make(UploadKind kind, const QByteArray& device) const;
    /// Whether it is a key that was made for the device.
    bool belongs(const QString& key, UploadKind kind, const QByteArray& device) const;
    static UploadKind kindOf(const QString& key);

    /// "until=...&sig=..." for the address of a key.
    QByteArray permit(const QString& key, qint64 nowMs) const;
    /// Whether a permit was given for the key and is not over. A key with a permit is safe as a file's name.
    bool isPermitted(const QString& key, const QByteArray& until, const QByteArray& signature,
                     qint64 nowMs) const;

    /// What stands for a device in files, instead of its id; 16 hexadecimal digits.
    QByteArray pseudonym(const QByteArray& device) const { return mark("device", device); }
    /// The same for the address of a client.
    QByteArray networkPseudonym(const QByteArray& client) const { return mark("network", client); }
    /// The same for what a device has sent.
    QByteArray contentCode(const QByteArray& device, const QByteArray& content) const {
        return mark("report", device + '\n' + content);
    }

private:
    QByteArray code(const char* purpose, const QByteArray& text) const;
    QByteArray mark(const char* purpose, const QByteArray& text) const;

    QByteArray m_ownKey;
};

}  // namespace StoreServer
