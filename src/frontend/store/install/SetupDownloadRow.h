#pragma once

#include <QUrl>
#include <QWidget>

class QProgressBar;
class QPushButton;
class SetupDownload;

namespace Fenk {
class Label;
}

/// Offers to download the set-up program, and shows how far that is. Only the user starts it. After a
/// connection broke off or the user cancelled it, the user can go on where it stopped, or discard that.
class SetupDownloadRow : public QWidget {
    Q_OBJECT
public:
    /// `appName` names the file where the address does not. `expectedBytes` is 0 when the size is not known.
    SetupDownloadRow(const QUrl& url, const QString& appName, qint64 expectedBytes,
                     QWidget* parent = nullptr);

    /// Another address; one that cannot be fetched disables the button. Ignored while a download runs.
    void setUrl(const QUrl& url);
    void setAccepted(const QStringList& suffixes);
    bool isRunning() const;
    /// As the button does it.
    void start();

Q_SIGNALS:
    void started();
    void downloaded(const QString& path);
    /// It failed or was cancelled; the text says so to the user.
    void stopped(const QString& text);

private:
    void toggle();
    void discard();
    void onSaved(const QString& path);
    void showProgress(qint64 received, qint64 total);
    void showIdle(const QString& text, bool isError);
    void stop(const QString& text, bool isError);

    QUrl m_url;
    QString m_appName;
    qint64 m_expectedBytes;
    SetupDownload* m_download;
    QPushButton* m_button;
    QPushButton* m_discard;
    QProgressBar* m_bar;
    Fenk::Label* m_text;
};
