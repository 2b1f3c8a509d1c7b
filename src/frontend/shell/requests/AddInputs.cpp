#include "shell/requests/AddInputs.h"

#include <QDir>
#include <QMimeData>
#include <QSysInfo>

#include "net/LoggedAddress.h"
#include "store/install/SetupDownload.h"

namespace {

bool isOfThisMachine(const QString& host) {
    return host.isEmpty() || host == QLatin1String("localhost") ||
           host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
}

/// Empty for what is neither a local path nor an address.
QString inputOf(const QUrl& url) {
    if (url.isLocalFile() && isOfThisMachine(url.host()))
        return QDir::cleanPath(url.path(QUrl::FullyDecoded));
    return SetupDownload::canFetch(url) ? url.toString(QUrl::FullyEncoded) : QString();
}

QString inputOfLine(QString line) {
    if (line.size() > 1 && (line.startsWith('"') || line.startsWith('\'')) && line.endsWith(line[0]))
        line = line.mid(1, line.size() - 2);
    if (line.startsWith(QLatin1String("~/")))
        line.replace(0, 1, QDir::homePath());
    if (line.startsWith('/'))
        return QDir::cleanPath(line);
    return inputOf(line.startsWith(QLatin1String("file:")) ? QUrl(line) : AddInputs::address(line));
}

}  // namespace

QStringList AddInputs::ofText(const QString& text) {
    QStringList inputs;
    // File managers say first what is to be done with the files.
    static const QStringList verbs{"copy", "cut", "x-special/nautilus-clipboard"};
    for (const QString& line : text.left(MaximumCount * MaximumCharacters).split('\n')) {
        const QString trimmed = line.trimmed();
        if (trimmed.isEmpty() || (inputs.isEmpty() && verbs.contains(trimmed)))
            continue;
        const QString input = trimmed.size() > MaximumCharacters ? QString() : inputOfLine(trimmed);
        if (input.isEmpty())
            return {};
        if (inputs.size() < MaximumCount && !inputs.contains(input))
            inputs += input;
    }
    return inputs;
}

QStringList AddInputs::of(const QMimeData* data) {
    if (!data->hasUrls())
        return data->hasText() ? ofText(data->text()) : QStringList();
    return ofUrls(data->urls());
}

QStringList AddInputs::ofUrls(const QList<QUrl>& urls) {
    QStringList inputs;
    for (const QUrl& url : urls) {
        QString input = inputOf(url);
        if (input.isEmpty() && !url.scheme().isEmpty())
            input = url.toString(QUrl::FullyEncoded);
        const bool isTaken = !input.isEmpty() && input.size() <= MaximumCharacters && !inputs.contains(input);
        if (isTaken && inputs.size() < MaximumCount)
            inputs += input;
    }
    return inputs;
}

QUrl AddInputs::address(const QString& line) {
    const QUrl url(line.trimmed(), QUrl::TolerantMode);
    return SetupDownload::canFetch(url) ? url : QUrl();
}

QString AddInputs::logged(const QString& input) {
    return isPath(input) ? input : loggedAddress(QUrl(input));
}

bool AddInputs::isPath(const QString& input) {
    return input.startsWith('/');
}

bool AddInputs::isAddress(const QString& input) {
    return !isPath(input) && SetupDownload::canFetch(QUrl(input));
}
