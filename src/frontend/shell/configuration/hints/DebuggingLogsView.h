#pragma once

#include <QTextBrowser>

/// The hints after a debugging run, as HTML of HintHtml. Follows no link itself: anchorClicked(QUrl) tells
/// that one was chosen, by mouse or by Tab and Return. Loads nothing from outside.
class DebuggingLogsView : public QTextBrowser {
    Q_OBJECT
public:
    explicit DebuggingLogsView(QWidget* parent = nullptr);

    /// Keeps the place to which the user has scrolled.
    void showPage(const QString& page);
    /// As it was given to showPage().
    const QString& page() const { return m_page; }

    QVariant loadResource(int type, const QUrl& name) override;

private:
    void render();

    QString m_page;
};
