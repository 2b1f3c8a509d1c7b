#pragma once

#include <QString>
#include <QVector>
#include <optional>

/// What would go into a package and what would stay at home, as "bottles_packager.py --list" tells it. Names
/// come from the bottle.
struct PackageSummary {
    static constexpr int MaximumRows = 2000;  ///< of each list; the packing script sorts the largest first

    struct Part {
        QString place;  ///< a folder on drive C; empty for files beside all folders
        qint64 bytes = 0;
        qint64 files = 0;
    };
    struct LeftOut {
        QString place;
        QString why;  ///< a word of the script
        qint64 entries = 0;
    };

    Part all;
    Part templates;  ///< files of runners and templates that become copies
    QVector<Part> folders;
    QVector<LeftOut> leftOut;
    qint64 wineLinks = 0;  ///< files that each machine takes from its own Wine
    QString nameCause;     ///< as PackagingFailure has them; empty if the package can have its name

    qint64 leftOutEntries() const;

    /// Nothing if the text is no JSON object.
    static std::optional<PackageSummary> fromJson(const QByteArray& text);
};
