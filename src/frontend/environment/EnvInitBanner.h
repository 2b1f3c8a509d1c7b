#pragma once

#include "fenk/window/Dialog.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;

namespace Fenk {
class Spinner;
class SuggestButton;
}  // namespace Fenk

/// The window of a set-up script: shows that it runs, what it prints and how it ended. Only shows;
/// BottleEnvScript runs the script, and runs it again after a failure. Closing the window with "Start Using",
/// the close button or Escape does not end the script. The logs are shown in the place of the picture, so
/// that nothing else moves. GUI thread.
class EnvInitBanner : public Fenk::Dialog {
    Q_OBJECT
public:
    static constexpr int MaxLines = 5000;  ///< of output that are kept; the oldest are dropped

    explicit EnvInitBanner(QWidget* parent = nullptr);

    /// The script runs. The banner begins with this.
    void showRunning(const QString& title);
    /// Plain text, a line each. The view stays at the end unless the user has scrolled up.
    void appendLines(const QStringList& lines);
    void showCompleted(const QString& title, const QString& message);
    /// The script could not be started.
    void showNotStarted(const QString& title, const QString& message);
    /// After one of those: shows why it failed, if given, and the button that asks for another run.
    void offerRetry(const QString& reason = {});

Q_SIGNALS:
    void retryRequested();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showEnd(const QPixmap& picture, const QString& title, const QString& message);
    void showLogs(bool on);

    QStackedWidget* m_stage;
    QLabel* m_picture;
    QPlainTextEdit* m_logs;
    Fenk::Spinner* m_spinner;
    Fenk::Label* m_title;
    Fenk::Label* m_description;
    Fenk::Label* m_message;
    Fenk::Label* m_reason;
    QPushButton* m_expand;
    QPushButton* m_retry;
    Fenk::SuggestButton* m_start;
};
