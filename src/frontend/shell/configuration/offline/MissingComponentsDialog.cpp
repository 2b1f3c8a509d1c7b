#include "shell/configuration/offline/MissingComponentsDialog.h"

#include <QDebug>
#include <QDesktopServices>
#include <QFile>
#include <QJsonArray>
#include <QUrl>

#include "shell/configuration/offline/FileTime.h"
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
    if (m_log.isEmpty() && !writeLog())
        return;
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(m_log)))
        setMessage(tr("The log is in the file %1.").arg(m_log));
}

bool MissingComponentsDialog::writeLog() {
    QFile file(QString("/tmp/%1-check-import.log").arg(nowInFileName()));
    const QByteArray text = logText(m_missing).toUtf8();
    const bool isOpen = file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
    if (isOpen && file.write(text) == text.size() && file.flush()) {
        m_log = file.fileName();
        return true;
    }
    qWarning().noquote() << "cannot write" << file.fileName() << file.errorString();
    setMessage(tr("The log could not be written to %1.").arg(file.fileName()));
    if (isOpen)
        file.remove();
    return false;
}
