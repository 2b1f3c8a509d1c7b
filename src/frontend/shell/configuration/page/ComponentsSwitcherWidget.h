#pragma once

#include <QStackedWidget>

#include "shell/configuration/rules/ComponentOffer.h"
#include "shell/configuration/rules/ComponentSetup.h"

class QComboBox;
class QProgressBar;

namespace Fenk {
class IconButton;
class Label;
class Spinner;
}  // namespace Fenk

/// Chooses the version of a component, and shows how far its setup is: the list, the download, the setup or
/// its failure. Only shows; BottleSettings knows.
class ComponentsSwitcherWidget : public QStackedWidget {
    Q_OBJECT
public:
    /// `combo` becomes the list; the widget takes it over.
    explicit ComponentsSwitcherWidget(QComboBox* combo, QWidget* parent = nullptr);

    QComboBox* combo() const { return m_combo; }
    /// Emits nothing.
    void setOffer(const ComponentOffer& offer, const QString& value);
    void setSetup(const ComponentSetup& setup);
    void setName(const QString& name);

Q_SIGNALS:
    void chosen(const QString& value);
    /// The user cancels the setup, or has seen that it failed.
    void left();

private:
    QWidget* makeTipsView();
    QWidget* makeSetupView();
    Fenk::IconButton* makeCloseButton(const QString& objectName);

    QComboBox* m_combo;
    Fenk::Label* m_tips = nullptr;
    Fenk::Label* m_percent = nullptr;
    QProgressBar* m_progress = nullptr;
    Fenk::IconButton* m_close = nullptr;
    Fenk::Label* m_setup = nullptr;
    Fenk::Spinner* m_spinner = nullptr;
    ComponentOffer m_offer;
};
