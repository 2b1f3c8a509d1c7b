#pragma once

#include <QWidget>

class QKeyEvent;
class QLineEdit;

namespace Fenk {
class IconButton;
class Label;
}  // namespace Fenk

/// A name, and on a press of the pen beside it a field for another one. Return and going elsewhere take what
/// stands in the field; Escape takes nothing. Letters that are typed on the pen begin another name.
class NameEditor : public QWidget {
    Q_OBJECT
public:
    /// How far the pen reaches beyond the right edge of the name, so that its picture lines up with texts.
    static constexpr int PenOverhang = 8;

    explicit NameEditor(QWidget* parent = nullptr);

    /// As it is stored. A field that is open keeps what the user has written.
    void setName(const QString& name);
    void setEditable(bool editable);

    bool isEditing() const { return m_editing; }
    void beginEditing();
    void take() { endEditing(true); }

Q_SIGNALS:
    void renamed(const QString& name);
    /// By Return or Escape, after renamed if that comes.
    void edited();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void endEditing(bool taken);

    Fenk::Label* m_label;
    Fenk::IconButton* m_pen;
    QLineEdit* m_field;
    QString m_name;
    bool m_editing = false;
};
