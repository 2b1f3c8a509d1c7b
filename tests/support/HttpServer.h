#pragma once

#include <QHash>
#include <QObject>
#include <QTcpServer>

class QTcpSocket;

namespace TestSupport {

/// A web server on a free port of this machine, with the faults of real ones. Files are served under their
/// names, with the query of the address or else without: "/name" whole or from a byte on, "/half/name" breaks
/// off in the middle of what is left,
/// "/broken/name" so if it is asked for the whole, "/stalled/name" sends no more from there, "/slow/name" a
/// byte every 20 ms, "/endless/name" goes on after its end, "/silent/name" never answers, "/packed/name"
/// claims to be compressed, "/moved/name" redirects to
/// "/name", "/loop/name" to itself, "/away/name" to a local file, "/other/name" to this server under another
/// name, everything else is 404.
class HttpServer : public QObject {
    Q_OBJECT

public:
    HttpServer();

    QString address(const QString& path) const {
        return QString("http://127.0.0.1:%1/%2").arg(m_server.serverPort()).arg(path);
    }

    QHash<QString, QByteArray> files;
    QStringList requests;  ///< path and first byte
    QByteArrayList heads;
    QByteArrayList bodies;
    QByteArray contentType;  ///< of the answers; none when empty
    QByteArray etag;         ///< the same; a part is sent only to those that name it, if they name one
    QByteArray disposition;  ///< the same

private:
    void answer(QTcpSocket* socket, const QByteArray& request);

    QTcpServer m_server;
};

}  // namespace TestSupport
