#include "backend/TextUtils.h"

#include <QLocale>
#include <cmath>

QString TextUtils::linkHtml(const QString& url, const QString& text) {
    return QString(R"(<a style="text-decoration: none;" href="%1">%2</a>)")
        .arg(url.toHtmlEscaped(), text.toHtmlEscaped());
}

QString TextUtils::formatSize(qint64 bytes) {
    static const QString units[] = {"B", "K", "M", "G", "T", "P", "E", "Z"};
    double value = double(bytes);
    int level = 0;
    // A 64-bit count ends at level 6.
    while (value >= 1024 && level < 7) {
        value = std::trunc(value / 1024);
        ++level;
    }
    return QString("%1%2").arg(value, 0, 'f', 0).arg(units[level]);
}

QString TextUtils::readableSize(qint64 bytes, int decimals, QLocale::DataSizeFormats units) {
    return QLocale().formattedDataSize(bytes, decimals, units);
}
