#pragma once

#include <QVector>

#include "fenk/window/Dialog.h"

namespace Fenk {
class Card;
}

/// Base of dialogs that show the facts of something in rows. All texts are shown as plain text.
class CommonInfoBaseDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    explicit CommonInfoBaseDialog(QWidget* parent = nullptr);

protected:
    /// No row for an empty value. The remark is a second, quiet line.
    void addTextRow(const QString& title, const QString& value, const QString& remark = {});
    /// A value that is a web address can be opened; another is only text.
    void addLinkRow(const QString& title, const QString& url);

private:
    void addRow(const QString& title, QWidget* value, const QString& remark);

    Fenk::Card* m_card;
    QVector<QWidget*> m_names;  ///< equally wide, so that the values stand below each other
};

/// A text from elsewhere, shortened, that can be broken anywhere: it asks for no width.
QString breakable(const QString& text);

/// The web address as a link that can be shown as rich text, or the escaped text of what is none.
QString webLinkHtml(const QString& url);
/// Opens a web address in the browser, and nothing else.
void openWebLink(const QString& url);
