#pragma once

#include <QString>
#include <QVector>

struct Hint;

/// Hints as HTML with links (see HintLink). Names are escaped.
namespace HintHtml {

/// The page with these hints; empty without any. `helpUrl` tells how to install graphics drivers.
QString page(const QVector<Hint>& hints, const QString& helpUrl);

/// The page with the link that fixes fonts shown as done and without a target. The page as it is if it can't
/// be read or has no such link.
QString withFontsFixed(const QString& page);

/// The colour that withFontsFixed() gives to the link.
extern const char FixedStyle[];

}  // namespace HintHtml
