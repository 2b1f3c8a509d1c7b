#pragma once

#include <QScrollArea>
#include <QVector>

#include "shell/configuration/rules/SearchedPage.h"
#include "shell/configuration/rules/SettingValues.h"

class BottleSettings;
class SettingControlRow;

namespace Fenk {
class Card;
class Label;
}  // namespace Fenk

/// The page with the basic settings of a bottle: a row for each line of SettingTable, in cards. Shows what
/// BottleSettings has and hands on what the user chooses.
class BasicPage : public QScrollArea, public SearchedPage {
    Q_OBJECT
public:
    explicit BasicPage(BottleSettings* settings, QWidget* parent = nullptr);

    SettingControlRow* row(Setting setting) const { return m_rows[int(setting)]; }

    int filter(const QString& text) override;
    /// Shows what the settings have.
    void refresh();

    /// The labels of the settings that can be reset: that have another value than in a new bottle.
    QStringList changedSettings() const;
    void resetAll();

Q_SIGNALS:
    void chosen(Setting setting, const QVariant& value);
    /// The user wants to see which Proton there is.
    void protonRequested();

private:
    struct Group {
        Fenk::Label* title;
        Fenk::Card* card;
        QVector<SettingControlRow*> rows;
    };

    QWidget* makeProtonLink();

    BottleSettings* m_settings;
    QWidget* m_proton;                   ///< below the Wine version
    QVector<SettingControlRow*> m_rows;  ///< in the order of the settings
    QVector<Group> m_groups;
};
