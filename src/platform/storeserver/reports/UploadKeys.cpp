#include "storeserver/reports/UploadKeys.h"

#include <QMessageAuthenticationCode>
#include <QRandomGenerator>
#include <array>

#include "storeserver/reports/SameBytes.h"

namespace StoreServer {

namespace {

constexpr int RandomLetters = 32;
constexpr int KeyLetters = 1 + 2 * RandomLetters;
constexpr int CodeLetters = 32;
constexpr int PseudonymLetters = 16;
constexpr char ImageLetter = 'i';
constexpr char ArchiveLetter = 'a';

char letterOf(UploadKind kind) {
    return kind == UploadKind::Image ? ImageLetter : ArchiveLetter;
}

}  // namespace

QByteArray UploadKeys::code(const char* purpose, const QByteArray& text) const {
    return QMessageAuthenticationCode::hash(purpose + (' ' + text), m_ownKey, QCryptographicHash::Sha256)
        .toHex()
        .left(CodeLetters);
}

QString UploadKeys::make(UploadKind kind, const QByteArray& device) const {
    std::array<quint32, RandomLetters / 8> random = {};
    QRandomGenerator::system()->generate(random.begin(), random.end());
    const QByteArray first = letterOf(kind) + QByteArray(reinterpret_cast<const char*>(random.data()),
                                                         int(random.size() * sizeof(quint32)))
                                                  .toHex();
    return QString::fromLatin1(first + code("owner", first + device));
}

bool UploadKeys::belongs(const QString& key, UploadKind kind, const QByteArray& device) const {
    const QByteArray text = key.toLatin1();
    const QByteArray first = text.left(1 + RandomLetters);
    return text.size() == KeyLetters && text[0] == letterOf(kind) &&
           areSameBytes(text.mid(first.size()), code("owner", first + device));
}

UploadKind UploadKeys::kindOf(const QString& key) {
    return key.startsWith(ImageLetter) ? UploadKind::Image : UploadKind::Archive;
}

QByteArray UploadKeys::permit(const QString& key, qint64 nowMs) const {
    const QByteArray until = QByteArray::number(nowMs + LifeMs);
    return "until=" + until + "&sig=" + code("upload", key.toUtf8() + ' ' + until);
}

bool UploadKeys::isPermitted(const QString& key, const QByteArray& until, const QByteArray& signature,
                             qint64 nowMs) const {
    return areSameBytes(signature, code("upload", key.toUtf8() + ' ' + until)) && until.toLongLong() >= nowMs;
}

QByteArray UploadKeys::mark(const char* purpose, const QByteArray& text) const {
    return code(purpose, text).left(PseudonymLetters);
}

}  // namespace StoreServer
