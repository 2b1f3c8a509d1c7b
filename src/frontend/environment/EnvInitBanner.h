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

/// The window of a script that sets something up: that it is at work, what it prints, and its end. It only
/// shows; BottleEnvScript runs the script, and runs it again after a failure. Closing it, with "Start Using",
/// the close button or Escape, ends nothing. Nothing moves when the logs are shown: they take the place of
/// the picture.
class EnvInitBanner : public Fenk::Dialog {
    Q_OBJECT
public:
    static constexpr int MaxLines = 5000;  ///< of the output that are kept, the last ones

    explicit EnvInitBanner(QWidget* parent = nullptr);

    /// The look while the script is at work, which the banner begins with.
    void showRunning(const QString& title);
    /// Whole lines, shown as plain text. The view follows the end unless the user has scrolled up.
    void appendLines(const QStringList& lines);
    void showCompleted(const QString& title, const QString& message);
    /// The end look of a script that did not even start.
    void showNotStarted(const QString& title, const QString& message);
    /// Below an end look: what went wrong, if there is more to say, and the button that asks for another run.
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
