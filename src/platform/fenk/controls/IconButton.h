#pragma once

#include <QToolButton>

namespace Fenk {

/// A button with an icon only, and a background only while hovered. `word` is its tool tip and accessible
/// name.
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
