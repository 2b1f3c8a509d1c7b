#pragma once

#include <QVector>
#include <QWidget>

class LogView;
class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QScrollArea;
class QStackedWidget;

namespace Fenk {
class Label;
}

/// One part of what leaves the machine: a text, a picture, or a file with text.
struct SentPart {
    QString title;
    QString text;
    QString picture;  ///< path; both are read in the background
    QString file;     ///< path
};

/// Shows what is about to be sent, part by part, so that a user can read all of it before: the parts on the
/// left, the chosen one on the right, pictures at their full size. Says what of a part cannot be shown, and
/// opens its file then. GUI thread.
class SentPreview : public QWidget {
    Q_OBJECT
public:
    explicit SentPreview(QWidget* parent = nullptr);

    /// Keeps the chosen part where it is among the new ones, too.
    void setParts(const QVector<SentPart>& parts);

private:
    void showPart(int index);
    void showFile(const QString& path);
    void showPicture(const QString& path);
    /// `file` can be opened; empty for none.
    void note(const QString& text, const QString& file = {});

    QVector<SentPart> m_parts;
    QListWidget* m_list;
    QStackedWidget* m_pages;
    QPlainTextEdit* m_text;
    QScrollArea* m_pictureArea;
    QLabel* m_picture;
    LogView* m_log;
    Fenk::Label* m_note;
    QPushButton* m_open;
    QString m_openFile;
    int m_shown = 0;  ///< counts the parts shown, for files that arrive late
};
