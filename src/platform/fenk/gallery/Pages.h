#pragma once

#include <QString>

class QVBoxLayout;
class QWidget;

/// The gallery's pages, each with all states of its controls. The caller owns them.
namespace Gallery {

QWidget* makeControlsPage();
QWidget* makeListsPage();
QWidget* makeSettingsPage();
QWidget* makeColorsPage();

/// Adds a heading and a card; returns the layout inside the card.
QVBoxLayout* addSection(QVBoxLayout* page, const QString& title);

}  // namespace Gallery
