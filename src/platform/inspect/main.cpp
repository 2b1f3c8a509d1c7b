// diec --json FILE: says what made a file, as JSON:
//   {"detects": [{"filetype", "values": [{"type", "name", "version", "info", "string"}]}]}
// Exit code 0 with an answer, 1 with an error text on standard error.
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtEndian>
#include <cstdio>

#include "inspect/Scanner.h"

namespace {

constexpr qint64 MaximumBytes = 64 * 1024 * 1024;  // the rest is not scanned
constexpr int HeaderOffsetAt = 0x3c;
constexpr quint16 Pe64Magic = 0x20b;

QString fileType(const QByteArray& content) {
    if (content.startsWith("\xd0\xcf\x11\xe0"))
        return "Compound file";
    if (!content.startsWith("MZ"))
        return "Binary";
    if (content.size() < HeaderOffsetAt + 4)
        return "MSDOS";
    const qint64 at = qFromLittleEndian<quint32>(content.constData() + HeaderOffsetAt);
    if (at + 26 > content.size() || content.mid(int(at), 4) != QByteArray("PE\0\0", 4))
        return "MSDOS";
    return qFromLittleEndian<quint16>(content.constData() + at + 24) == Pe64Magic ? "PE64" : "PE32";
}

QJsonObject describe(const Scanner::Value& value) {
    QString line = value.type + ": " + value.name;
    if (!value.version.isEmpty())
        line += '(' + value.version + ')';
    if (!value.info.isEmpty())
        line += '[' + value.info + ']';
    return {{"type", value.type},
            {"name", value.name},
            {"version", value.version},
            {"info", value.info},
            {"string", line}};
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList words = application.arguments().mid(1);
    if (words.size() != 2 || words[0] != "--json" || !QFileInfo(words[1]).isFile()) {
        std::fputs("usage: diec --json FILE\n", stderr);
        return 1;
    }
    Scanner scanner;
    QString error;
    if (!scanner.loadRules(application.applicationDirPath() + "/rules", &error)) {
        std::fprintf(stderr, "diec: %s\n", qPrintable(error));
        return 1;
    }
    QFile file(words[1]);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "diec: %s\n", qPrintable(file.errorString()));
        return 1;
    }
    const QByteArray content = file.read(MaximumBytes);
    std::vector<Scanner::Value> found;
    if (!scanner.scan(reinterpret_cast<const uchar*>(content.constData()), content.size(), &found)) {
        std::fputs("diec: the file could not be looked through in time\n", stderr);
        return 1;
    }
    QJsonArray values;
    for (const Scanner::Value& value : found)
        values.append(describe(value));
    const QJsonObject detect{{"filetype", fileType(content)}, {"values", values}};
    const QJsonObject answer{{"detects", QJsonArray{detect}}};
    std::fputs(QJsonDocument(answer).toJson(QJsonDocument::Compact).constData(), stdout);
    return 0;
}
