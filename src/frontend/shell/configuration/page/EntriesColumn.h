#pragma once

#include <QVector>
#include <QWidget>

class AppEntryButton;
class BottlePrograms;
class QVBoxLayout;

namespace Fenk {
class IconButton;
class Label;
}  // namespace Fenk

/// The column on the left of the configuration window: the programs of the bottle, which one is current, and
/// the buttons that add one and make the column narrow.
class EntriesColumn : public QWidget {
    Q_OBJECT
public:
    static constexpr int WideWidth = 240;
    static constexpr int NarrowWidth = 72;

    explicit EntriesColumn(BottlePrograms* programs, QWidget* parent = nullptr);

    const QVector<AppEntryButton*>& buttons() const { return m_buttons; }
    /// Shows icons only, without changing its width.
    void setNarrow(bool narrow);

Q_SIGNALS:
    void clicked(AppEntryButton* button);
    void menuRequested(AppEntryButton* button, const QPoint& at);
    void addRequested();
    void toggleRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void refresh();
    AppEntryButton* makeButton(const QString& id);

    BottlePrograms* m_programs;
    QVector<AppEntryButton*> m_buttons;
    QVBoxLayout* m_list;
    Fenk::Label* m_title;
    Fenk::Label* m_hint;
    Fenk::IconButton* m_add;
    Fenk::IconButton* m_toggle;
    bool m_isNarrow = false;
};
