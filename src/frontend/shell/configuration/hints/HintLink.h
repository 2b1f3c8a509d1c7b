#pragma once

#include <QStringList>
#include <QUrl>

/// Where a link of a hint leads.
struct HintLink {
    enum class Kind { None, Component, Fonts, DriveC, Web, Page, Runner };

    Kind kind = Kind::None;
    QString text;       ///< a component, a runner, the path below drive C, or an address
    QStringList names;  ///< of font files
    int page = -1;      ///< of BottlesConfigView

    static HintLink of(const QUrl& anchor);

    /// The target as it was written into the page.
    static QString target(const QUrl& anchor);
};
