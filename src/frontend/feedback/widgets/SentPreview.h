#pragma once

#include <QImage>
#include <QVector>
#include <QWidget>

class LogView;
class QLabel;
class QListWidget;
class QPlainTextEdit;
class QStackedWidget;

/// One part of what leaves the machine: a text, a picture, or a file with text.
struct SentPart {
    QString title;
    QString text;
    QImage picture;
    QString file;  ///< path; shown by itself, read in the background
};

/// Shows what is about to be sent, part by part, so that a user can read all of it before: the parts on the
/// left, the chosen one on the right. GUI thread.
class SentPreview : public QWidget {
    Q_OBJECT
public:
    explicit SentPreview(QWidget* parent = nullptr);

    /// Keeps the chosen part where it is among the new ones, too.
    void setParts(const QVector<SentPart>& parts);

private:
    void showPart(int index);
    void showFile(const QString& path);

    QVector<SentPart> m_parts;
    QListWidget* m_list;
    QStackedWidget* m_pages;
    QPlainTextEdit* m_text;
    QLabel* m_picture;
    LogView* m_log;
    int m_shown = 0;  ///< counts the parts shown, for files that arrive late
};
