#include "support/HttpServer.h"

#include <QRegularExpression>
#include <QTcpSocket>
#include <QTimer>

namespace TestSupport {

namespace {
constexpr int BreakMs = 60;
constexpr int SlowMs = 20;
}  // namespace

HttpServer::HttpServer() {
    m_server.listen(QHostAddress::LocalHost);
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        QTcpSocket* socket = m_server.nextPendingConnection();
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
            static const QRegularExpression length("Content-Length: (\\d+)");
            const QByteArray request = socket->peek(socket->bytesAvailable());
            const int head = request.indexOf("\r\n\r\n") + 4;
            const int wanted = length.match(QString::fromLatin1(request)).captured(1).toInt();
            if (head < 4 || request.size() < head + wanted)
                return;
            socket->readAll();
            heads += request.left(head);
            bodies += request.mid(head);
            answer(socket, request);
        });
    });
}

void HttpServer::answer(QTcpSocket* socket, const QByteArray& request) {
    static const QRegularExpression range("Range: bytes=(\\d+)-");
    const QString path = QString::fromLatin1(request).section(' ', 1, 1).mid(1);
    static const QRegularExpression condition("If-Range: ([^\\r]*)");
    const QString known = condition.match(QString::fromLatin1(request)).captured(1);
    const bool isSame = known.isEmpty() || known == etag;
    const int begin = isSame ? range.match(QString::fromLatin1(request)).captured(1).toInt() : 0;
    requests += QString("%1@%2").arg(path).arg(begin);
    const QString fault = path.contains('/') ? path.section('/', 0, 0) : QString();
    if (fault == "silent")
        return;
    if (fault == "moved" || fault == "loop" || fault == "away" || fault == "other") {
        const QByteArray target = fault == "moved"  ? '/' + path.section('/', 1).toUtf8()
                                  : fault == "loop" ? '/' + path.toUtf8()
                                  : fault == "other"
                                      ? "http://localhost:" + QByteArray::number(m_server.serverPort()) +
                                            '/' + path.section('/', -1).toUtf8()
                                      : QByteArray("file:///etc/hostname");
        socket->write("HTTP/1.1 302 Found\r\nContent-Length: 0\r\nConnection: close\r\nLocation: " + target +
                      "\r\n\r\n");
        socket->disconnectFromHost();
        return;
    }
    QString name = path.section('/', -1);
    if (!files.contains(name))
        name = name.section('?', 0, 0);
    if (!files.contains(name)) {
        socket->write("HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\nConnection: close\r\n\r\ngone");
        socket->disconnectFromHost();
        return;
    }
    const QByteArray body = files[name].mid(begin);
    QByteArray head = begin > 0 ? QByteArray("HTTP/1.1 206 Partial Content\r\nContent-Range: bytes ") +
                                      QByteArray::number(begin) + "-" +
                                      QByteArray::number(files[name].size() - 1) + "/*\r\n"
                                : QByteArray("HTTP/1.1 200 OK\r\n");
    if (fault != "endless")
        head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    if (!contentType.isEmpty())
        head += "Content-Type: " + contentType + "\r\n";
    if (!etag.isEmpty())
        head += "ETag: " + etag + "\r\n";
    if (!disposition.isEmpty())
        head += "Content-Disposition: " + disposition + "\r\n";
    if (fault == "packed")
        head += "Content-Encoding: gzip\r\n";
    socket->write(head + "Connection: close\r\n\r\n");
    const bool isBroken = fault == "half" || (fault == "broken" && begin == 0);
    const bool isCut = isBroken || fault == "stalled" || fault == "slow";
    socket->write(isCut ? body.left(body.size() / 2) : body);
    if (fault == "endless")
        socket->write(body + body);
    if (fault == "slow") {
        auto* timer = new QTimer(socket);
        connect(timer, &QTimer::timeout, socket, [socket] { socket->write("."); });
        timer->start(SlowMs);
    } else if (isBroken)  // what was sent has arrived by then
        QTimer::singleShot(BreakMs, socket, &QTcpSocket::disconnectFromHost);
    else if (fault != "stalled")
        socket->disconnectFromHost();
}

}  // namespace TestSupport
