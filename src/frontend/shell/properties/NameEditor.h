#pragma once

#include <QWidget>

class QLineEdit;

namespace Fenk {
class IconButton;
class Label;
}  // namespace Fenk

/// A name with a pen button, which opens a field to edit it. Return and a loss of focus commit the field's
/// text, Escape discards it.
class NameEditor : public QWidget {
    Q_OBJECT
public:
    /// In pixels: how far the pen reaches beyond the right edge, so that its picture is aligned with texts.
    static constexpr int PenOverhang = 8;

    explicit NameEditor(QWidget* parent = nullptr);

    /// The stored name. Does not change the text of an open field.
    void setName(const QString& name);
    void setEditable(bool editable);

    void beginEditing();
    void commit() { endEditing(true); }

Q_SIGNALS:
    void renamed(const QString& name);
    /// Ended by Return or Escape; after renamed(), if that is emitted.
    void edited();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void endEditing(bool isCommitted);

    Fenk::Label* m_label;
    Fenk::IconButton* m_pen;
    QLineEdit* m_field;
    QString m_name;
    bool m_editing = false;
};
