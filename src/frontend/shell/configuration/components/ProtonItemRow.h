#pragma once

#include <QWidget>

class QPushButton;

namespace Fenk {
class Label;
}

/// One Proton in the table of InstallProtonDialog: its name, whether it is on the machine, and a button that
/// leads to its page in the app store.
class ProtonItemRow : public QWidget {
    Q_OBJECT
public:
    static constexpr int StatusWidth = 160;
    static constexpr int ButtonWidth = 96;

    explicit ProtonItemRow(const QString& name, QWidget* parent = nullptr);

    const QString& name() const { return m_name; }
    void setInstalled(bool installed);

Q_SIGNALS:
    void pressed(const QString& name);

private:
    QString m_name;
    Fenk::Label* m_status;
    QPushButton* m_button;
};
