#pragma once

#include <QWidget>

#include "fenk/style/Theme.h"
#include "shell/requests/AddReading.h"

class QLabel;
class QPushButton;

namespace Fenk {
class Label;
class Spinner;
}  // namespace Fenk

/// Shows what is to be added, and whether it can be. Checks it in the background, which the user can cancel
/// when it takes long; a later check replaces one that is running. Hidden while there is none. GUI thread.
class FileStateRow : public QWidget {
    Q_OBJECT
public:
    explicit FileStateRow(QWidget* parent = nullptr);

    /// Inputs of AddInputs.
    void check(const QStringList& inputs);
    /// What has been checked elsewhere.
    void show(const AddRequest& request);
    void clear();

    const AddRequest& request() const { return m_request; }
    bool isGood() const { return m_request.canBeAdded(); }
    bool isChecking() const { return m_reading->isRunning(); }

Q_SIGNALS:
    /// Another request, or another state of it.
    void changed();

private:
    void showName(const QString& name, const QString& path);
    void showState(const QString& text, Fenk::Theme::Role role, const QIcon& icon);

    AddRequest m_request;
    AddReading* m_reading;
    Fenk::Label* m_name;
    Fenk::Spinner* m_spinner;
    QLabel* m_icon;
    Fenk::Label* m_state;
    Fenk::Label* m_reason;
    QPushButton* m_cancel;
};
