#include "shell/configuration/offline/MissingComponentsDialog.h"

#include <QDateTime>
#include <QDebug>
#include <QDesktopServices>
#include <QJsonArray>
#include <QSaveFile>
#include <QUrl>

#include "widgets/WidgetImages.h"

MissingComponentsDialog::MissingComponentsDialog(const QJsonObject& missing, QWidget* parent)
    : Dialog(parent), m_missing(missing) {
    setObjectName("missing_components_dialog");
    setIcon(warningIcon());
    setTitle(tr("Components may can't be installed in offline"));
    setMessage(
        tr("One or more components are missing dependencies and cannot be installed in offline mode: %1")
            .arg(missing.keys().join(", ")));
    setOnButtonClickedClose(false);
    const int showLogs = addButton(tr("Show Logs"));
    addButton(tr("OK"), true, ButtonRecommend);
    connect(this, &Dialog::buttonClicked, this, [this, showLogs](int index) {
        if (index == showLogs)
            showLog();
        else
            done(index);
    });
}

/// The log is English in every session, as it is sent to developers.
QString MissingComponentsDialog::logText(const QJsonObject& missing) {
    QString text("Those components may can't be installed in offline.\n");
    for (auto it = missing.begin(); it != missing.end(); ++it) {
        text += QString("Missing component for %1:\n").arg(it.key());
        for (const QJsonValue& name : it.value().toArray())
            text += QString("- %1\n").arg(name.toString());
    }
    return text;
}

void MissingComponentsDialog::showLog() {
    const QString now = QDateTime::currentDateTime().toString("yyyy-MM-dd_HH-mm-ss");
    // A new file takes the place of whatever lies there, and no link is followed.
    QSaveFile file(QString("/tmp/%1-check-import.log").arg(now));
    const QByteArray text = logText(m_missing).toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
        qWarning().noquote() << "cannot write" << file.fileName() << file.errorString();
        setMessage(tr("The log could not be written to %1.").arg(file.fileName()));
        return;
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(file.fileName()));
}
