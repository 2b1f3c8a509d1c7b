#include "shell/requests/AddInputs.h"

#include <QDir>
#include <QMimeData>
#include <QUrl>

namespace {

/// Empty for what is neither a local path nor an address.
QString inputOf(const QUrl& url) {
    if (url.isLocalFile() && (url.host().isEmpty() || url.host() == QLatin1String("localhost")))
        return QDir::cleanPath(url.path(QUrl::FullyDecoded));
    const QString scheme = url.scheme();
    const bool isWeb = scheme == QLatin1String("http") || scheme == QLatin1String("https");
    return isWeb && !url.host().isEmpty() ? url.toString(QUrl::FullyEncoded) : QString();
}

QString inputOfLine(QString line) {
    if (line.size() > 1 && (line.startsWith('"') || line.startsWith('\'')) && line.endsWith(line[0]))
        line = line.mid(1, line.size() - 2);
    if (line.startsWith(QLatin1String("~/")))
        line.replace(0, 1, QDir::homePath());
    if (line.startsWith('/'))
        return QDir::cleanPath(line);
    return line.contains(' ') ? QString() : inputOf(QUrl(line, QUrl::StrictMode));
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
    QStringList inputs;
    for (const QUrl& url : data->urls()) {
        const QString input = inputOf(url);
        if (!input.isEmpty() && inputs.size() < MaximumCount && !inputs.contains(input))
            inputs += input;
    }
    return inputs;
}

bool AddInputs::isAddress(const QString& input) {
    return !input.startsWith('/');
}
