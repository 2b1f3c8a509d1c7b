#pragma once

#include <QString>

class QVBoxLayout;
class QWidget;

/// The gallery's pages, each with every state of its controls. The caller takes them over.
namespace Gallery {

QWidget* makeControlsPage();
QWidget* makeListsPage();
QWidget* makeSettingsPage();
QWidget* makeColorsPage();

/// A heading over a card; returns the layout inside the card.
QVBoxLayout* addSection(QVBoxLayout* page, const QString& title);

}  // namespace Gallery
