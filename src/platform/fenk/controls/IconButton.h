#pragma once

#include <QToolButton>

namespace Fenk {

/// A button that is only a picture: no ground until the pointer is over it. The word that a picture alone
/// does not say is its tool tip and its accessible name.
class IconButton : public QToolButton {
    Q_OBJECT
public:
    enum Size { Compact, Regular };  ///< 28 and 36 pixels square

    /// `iconName` as for Theme::icon().
    IconButton(const QString& iconName, const QString& word, QWidget* parent = nullptr, Size size = Regular);

    void setIconName(const QString& iconName);
    void setWord(const QString& word);
};

}  // namespace Fenk
