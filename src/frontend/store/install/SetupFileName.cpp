#include "store/install/SetupFileName.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

namespace {

constexpr int MaximumBytes = 120;  // of UTF-8, so that a number and a suffix fit
constexpr int MaximumNumber = 1000;

QString lastPart(QString path) {
    return path.replace('\\', '/').section('/', -1);
}

/// Without what could hide, end early or leave the directory.
QString cleaned(const QString& name) {
    QString result;
    for (const QChar c : lastPart(name)) {
        if (c.isPrint() && c.category() != QChar::Other_Format && !QString("\"*:<>?|").contains(c))
            result += c;
    }
    result = result.simplified();
    while (result.startsWith('.') || result.startsWith('-') || result.startsWith(' '))
        result.remove(0, 1);
    while (result.toUtf8().size() > MaximumBytes)
        result.chop(1);
    return result;
}

QString nameIn(const QByteArray& disposition) {
    static const QRegularExpression encoded("filename\\*=UTF-8'[^']*'([^;\\s]+)",
                                            QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression plain("filename=(?:\"([^\"]*)\"|([^;\\s]+))",
                                          QRegularExpression::CaseInsensitiveOption);
    const QString text = QString::fromUtf8(disposition);
    if (const auto match = encoded.match(text); match.hasMatch())
        return QUrl::fromPercentEncoding(match.captured(1).toLatin1());
    const auto match = plain.match(text);
    return match.captured(1).isEmpty() ? match.captured(2) : match.captured(1);
}

QString stem(const QString& name, const QString& suffix) {
    for (const QString& ending : {'.' + suffix, QString(suffix == "yml" ? ".yaml" : "")}) {
        if (!ending.isEmpty() && name.endsWith(ending, Qt::CaseInsensitive))
            return name.chopped(ending.size());
    }
    return name;
}

}  // namespace

QString SetupFileName::suffixOf(const QByteArray& firstBytes) {
    if (firstBytes.startsWith("MZ"))
        return QStringLiteral("exe");
    if (firstBytes.startsWith("PK\3\4"))
        return QStringLiteral("zip");
    return firstBytes.startsWith("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1") ? QStringLiteral("msi") : QString();
}

bool SetupFileName::isManifestName(const QUrl& url, const QByteArray& disposition) {
    const QString told = cleaned(nameIn(disposition));
    const QString name = told.isEmpty() ? cleaned(url.path(QUrl::FullyDecoded)) : told;
    return name.endsWith(".yml", Qt::CaseInsensitive) || name.endsWith(".yaml", Qt::CaseInsensitive);
}

QString SetupFileName::of(const QUrl& url, const QByteArray& disposition, const QString& appName,
                          const QString& suffix) {
    const QString told = nameIn(disposition);
    for (const QString& candidate : {told, url.path(QUrl::FullyDecoded), appName, QString("setup")}) {
        const QString name = stem(cleaned(candidate), suffix);
        if (!name.isEmpty())
            return name + '.' + suffix;
    }
    return {};
}

QString SetupFileName::freePath(const QString& directory, const QString& name) {
    const QFileInfo file(name);
    QString path = directory + '/' + name;
    for (int number = 1; number < MaximumNumber && QFileInfo::exists(path); ++number)
        path = QString("%1/%2 (%3).%4")
                   .arg(directory, file.completeBaseName(), QString::number(number), file.suffix());
    return path;
}
