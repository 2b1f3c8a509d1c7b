#include "store/images/NetworkImageLoader.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QNetworkRequest>
#include <QPainter>
#include <QPointer>
#include <QSaveFile>

#include "backend/InBackground.h"
#include "core/base/Paths.h"
#include "fenk/style/Theme.h"
#include "launch/icons/UntrustedImage.h"
#include "net/HttpRequest.h"

namespace {

constexpr int Decoders = 2;
constexpr int DefaultEdge = 256;

void writeFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(Paths::imageCacheDir());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        qWarning().noquote() << "failed to keep a picture:" << path << file.errorString();
}

QByteArray png(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QImage decodeAndKeep(const QUrl& url, const QByteArray& bytes) {
    const auto result = UntrustedImage::decode(bytes);
    if (result.image.isNull())
        qWarning().noquote() << "failed to decode the picture of" << url.toDisplayString() << result.error;
    else  // drawing an SVG again would take the GUI thread too long
        writeFile(NetworkImageLoader::cacheFile(url), result.isDrawn ? png(result.image) : bytes);
    return result.image;
}

}  // namespace

NetworkImageLoader* NetworkImageLoader::instance() {
    // Pixmaps must be deleted before the application object.
    static QPointer<NetworkImageLoader> loader;
    if (!loader) {
        loader = new NetworkImageLoader;
        loader->setParent(QCoreApplication::instance());
    }
    return loader;
}

NetworkImageLoader::NetworkImageLoader() {
    m_decoders.setMaxThreadCount(Decoders);
}

QString NetworkImageLoader::cacheFile(const QUrl& url) {
    const QByteArray hash = QCryptographicHash::hash(url.toEncoded(), QCryptographicHash::Md5);
    return Paths::imageCacheDir() + '/' + QString::fromLatin1(hash.toHex());
}

QUrl NetworkImageLoader::webUrl(const QString& text) {
    const QUrl url(text);
    return url.scheme() == "http" || url.scheme() == "https" ? url : QUrl();
}

QPixmap NetworkImageLoader::defaultPixmap() {
    if (m_default.isNull()) {
        m_default = QPixmap(DefaultEdge, DefaultEdge);
        m_default.fill(Qt::transparent);
        QPainter painter(&m_default);
        Fenk::Theme::icon("cxb_app_default_icon").paint(&painter, m_default.rect());
    }
    return m_default;
}

QNetworkReply* NetworkImageLoader::load(const QUrl& url) {
    if (url.isLocalFile()) {
        show(url, UntrustedImage::read(url.toLocalFile()).image);
        return nullptr;
    }
    const auto running = m_running.find(url);
    if (running != m_running.end()) {
        ++running->users;
        return running->request ? running->request->reply() : nullptr;
    }
    const QString kept = cacheFile(url);
    if (QFile::exists(kept)) {
        const auto result = UntrustedImage::read(kept);
        if (result.image.isNull()) {
            qWarning().noquote() << "failed to read a kept picture:" << kept << result.error;
            QFile::remove(kept);  // fetched again by the next load
        }
        show(url, result.image);
        return nullptr;
    }
    auto* request = new HttpRequest(&m_manager, this);
    HttpRequest::Limits limits;
    limits.answerBytes = UntrustedImage::MaxBytes;
    request->setLimits(limits);
    connect(request, &HttpRequest::finished, this, [this, request, url](const HttpAnswer& answer) {
        request->deleteLater();
        onImageDownloaded(url, answer);
    });
    m_running.insert(url, {request, 1});
    request->send("GET", QNetworkRequest(url));
    return request->reply();
}

void NetworkImageLoader::release(const QUrl& url) {
    const auto running = m_running.find(url);
    if (running == m_running.end() || running->users == 0)
        return;
    --running->users;
    // What has come already is decoded and kept.
    if (running->users == 0 && running->request)
        running->request->abort();
}

void NetworkImageLoader::onImageDownloaded(const QUrl& url, const HttpAnswer& answer) {
    if (answer.error == HttpAnswer::Error::Aborted ||
        answer.networkError == QNetworkReply::OperationCanceledError) {
        m_running.remove(url);
        return;
    }
    if (answer.error != HttpAnswer::Error::None) {
        qWarning().noquote() << "failed to fetch the picture of" << url.toDisplayString() << answer.errorText;
        show(url, {});
        return;
    }
    inBackground(
        this, [url, bytes = answer.body] { return decodeAndKeep(url, bytes); },
        [this, url](const QImage& image) { show(url, image); }, &m_decoders);
}

void NetworkImageLoader::show(const QUrl& url, const QImage& image) {
    m_running.remove(url);
    Q_EMIT imageLoaded(url, image.isNull() ? defaultPixmap() : QPixmap::fromImage(image));
}
