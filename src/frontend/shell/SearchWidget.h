#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>

namespace Fenk {
class SearchEdit;
}

/// The search field in the title bar. Down and Return emit leaveForResults(); Escape clears the field and
/// returns the focus to the widget that had it before.
class SearchWidget : public QWidget {
    Q_OBJECT
public:
    explicit SearchWidget(QWidget* parent = nullptr);

    QString text() const;
    void clear();
    /// Focuses the field and appends a letter that was typed elsewhere in the window.
    void begin(const QString& letter);

    /// Asked first when the user pastes into the field; true means that it was no keyword.
    void setPasteHandler(const std::function<bool()>& handler) { m_pasteHandler = handler; }

Q_SIGNALS:
    void textChanged(const QString& text);
    void leaveForResults();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void clearAndReturn();

    Fenk::SearchEdit* m_edit;
    std::function<bool()> m_pasteHandler;
    QPointer<QWidget> m_previousFocus;
    bool m_hasPreviousFocus = false;  ///< stays true if that widget is deleted
};
