#pragma once

#include <QPointer>
#include <QWidget>

namespace Fenk {
class SearchEdit;
}

/// The search field in the title bar. Down and Return lead to what was found, Escape back to where the user
/// was before.
class SearchWidget : public QWidget {
    Q_OBJECT
public:
    explicit SearchWidget(QWidget* parent = nullptr);

    QString text() const;
    void clear();
    /// The first letter of a search that was begun anywhere in the window.
    void begin(const QString& letter);

Q_SIGNALS:
    void textChanged(const QString& text);
    void leaveForResults();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void stepBack();

    Fenk::SearchEdit* m_edit;
    QPointer<QWidget> m_before;      ///< had the focus before the field
    bool m_isFromElsewhere = false;  ///< something had, even if it is gone by now
};
