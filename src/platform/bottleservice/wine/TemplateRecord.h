#pragma once

#include <QString>
#include <QStringList>

/// Which template was the last one of each runner, in templates.json of the data directory: a JSON object
/// from the runner's name to the template's. What tells, without asking the service, that a runner has
/// changed since.
namespace TemplateRecord {

/// Enters a template. A record that cannot be written is only logged: it costs an offer to set things up.
void note(const QString& dataDir, const QStringList& runners, const QString& key);

/// Whether a runner that had a template has another build now, or a template is damaged. A runner that never
/// had one, or whose template is gone, gets one with its first bottle. Takes some milliseconds.
bool isOutdated(const QString& dataDir);

/// Whether templates that somebody has begun to make lie about, by a service that runs or was killed.
bool hasUnfinished(const QString& dataDir);

}  // namespace TemplateRecord
