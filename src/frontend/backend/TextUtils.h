#pragma once

#include <QLocale>
#include <QString>

namespace TextUtils {

/// A link without underline. Address and text are plain and are escaped here.
QString linkHtml(const QString& url, const QString& text);

/// A size in bytes as whole units of 1024, cut off and not rounded: 1023B, 1K, 3G.
QString formatSize(qint64 bytes);

/// A size in bytes for the user, in the format of the user's language: in SI units (1 kB is 1000 bytes)
/// unless asked otherwise.
QString readableSize(qint64 bytes, int decimals = 1,
                     QLocale::DataSizeFormats units = QLocale::DataSizeSIFormat);

}  // namespace TextUtils
