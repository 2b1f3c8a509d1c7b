#pragma once

#include <QComboBox>

/// The debug channels of Wine, edited as text. Choosing an entry of the list adds its channels; only the user
/// takes any out, in the text.
class WineChannerCombobox : public QComboBox {
    Q_OBJECT
public:
    explicit WineChannerCombobox(QWidget* parent = nullptr);

    void setChannels(const QString& channels);
    QString channels() const;

    void showPopup() override;

Q_SIGNALS:
    void textChanged(const QString& channels);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void addEntry(int entry);

    QString m_channels;  ///< what the chosen entry is added to
};
