#pragma once

#include <QJsonObject>

#include "fenk/window/Dialog.h"

/// Warns of components that cannot be imported, since others that they need are in no chosen file. "Show
/// Logs" writes which ones into a file and opens that.
class MissingComponentsDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    /// `missing`: component name to array of names.
    explicit MissingComponentsDialog(const QJsonObject& missing, QWidget* parent = nullptr);

    static QString logText(const QJsonObject& missing);

private:
    void showLog();
    /// Into a new file; says so when that fails.
    bool writeLog();

    QJsonObject m_missing;
    QString m_log;  ///< path, once it is written
};
