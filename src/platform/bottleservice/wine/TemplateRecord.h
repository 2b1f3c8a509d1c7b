#pragma once

#include <QString>
#include <QStringList>

/// The record of the last template of each runner, in templates.json of the data directory: a JSON object,
/// runner's name to template's key. It tells without the service whether a runner has changed since.
namespace TemplateRecord {

/// Records a template. A failure is only logged: then nobody is offered to update the templates.
void note(const QString& dataDir, const QStringList& runners, const QString& key);

/// Whether a runner that had a template has another build now, or a template is damaged. A runner without a
/// template gets one with its first bottle and does not count. Takes some milliseconds.
bool isOutdated(const QString& dataDir);

/// Whether there are unfinished templates, of a service that runs or was killed.
bool hasUnfinished(const QString& dataDir);

}  // namespace TemplateRecord
