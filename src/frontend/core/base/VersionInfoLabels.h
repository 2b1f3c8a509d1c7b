#pragma once

#include <QMap>
#include <QString>

/// Chinese labels of the fields of a Windows version resource, by the field's lower-case key.
const QMap<QString, QString>& versionInfoLabels();
