#pragma once

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QObject>
#include <QPalette>
#include <memory>

namespace Fenk {

class SystemAppearance;

/// The colours and fonts of all windows by role, light and dark. One instance per process, created by the
/// first caller in the GUI thread; Application passes its palette to Qt and applies it again on every change.
/// Follows the desktop's preference until a colour type is set. Painters query colours while painting and
/// keep none.
class Theme : public QObject {
    Q_OBJECT
public:
    enum ColorType { Light, Dark };
    Q_ENUM(ColorType)

    enum Role {
        Window,      ///< window background
        Surface,     ///< cards, dialogs, menus, fields
        Sunken,      ///< sidebars, logs, tracks
        Border,      ///< all lines
        Text,        ///< ordinary text
        Secondary,   ///< descriptions, placeholders
        Disabled,    ///< disabled text and icons only
        Accent,      ///< suggested action, links, selection edge, progress
        OnAccent,    ///< text on Accent or on filled Danger
        AccentSoft,  ///< hover and selection background
        Danger,
        Warning,
        Success
    };
    Q_ENUM(Role)
    static constexpr int RoleCount = Success + 1;

    enum FontRole { Body, BodyStrong, Small, SmallStrong, Heading, Title, Fixed };
    Q_ENUM(FontRole)

    static Theme* instance();

    ColorType colorType() const { return m_type; }
    bool isDark() const { return m_type == Dark; }
    bool followsSystem() const { return m_follows; }

    /// Sets a fixed type; followSystem() follows the desktop again.
    void setColorType(ColorType type);
    void followSystem();

    /// Loads the user's choice from `path` and saves later choices there. If the file is unreadable, the
    /// desktop's preference is used.
    void setChoiceFile(const QString& path);

    QColor color(Role role) const { return color(m_type, role); }
    QColor color(ColorType type, Role role) const;
    QPalette palette() const { return palette(m_type); }
    QPalette palette(ColorType type) const;

    /// The system's font family in our sizes; Fixed is the system's fixed-width family.
    QFont font(FontRole role = Body) const;

    /// Sets the desktop's accent. Ignored, and our accent restored, if text on it would not be readable.
    void setAccent(const QColor& accent);

    /// False if the desktop wants no animations, or CELLARIX_NO_ANIMATION is set.
    bool animationsEnabled() const { return m_animations; }
    void setAnimationsEnabled(bool enabled);

    /// `ms`, or 0 if animations are off.
    int duration(int ms) const { return m_animations ? ms : 0; }

    /// The icon of the desktop's theme, else our own from ":/icons" or the toolkit's. Names ending in
    /// "-symbolic" and our one-colour icons are drawn in the text colour of the theme. Null for an unknown
    /// name.
    static QIcon icon(const QString& name);

    /// Adds a directory that is searched for icon themes before the desktop's own.
    static void addIconSearchPath(const QString& directory);

    /// Uses the desktop's preference according to Qt's initial palette, then according to the desktop portal.
    void watchSystem(const QPalette& initial);
    /// Call before the application object and its session bus connection are destroyed.
    void unwatchSystem();

Q_SIGNALS:
    void changed();                                ///< colours, accent or animations have changed
    void themeTypeChanged(Theme::ColorType type);  ///< switched between light and dark

private:
    Theme();
    ~Theme() override;
    void apply(ColorType type);
    void saveChoice() const;
    bool accentFits(ColorType type, const QColor& accent) const;

    ColorType m_type = Light;
    ColorType m_systemType = Light;
    bool m_follows = true;
    bool m_animations = true;
    QColor m_accent;
    QString m_choiceFile;
    std::unique_ptr<SystemAppearance> m_system;
};

}  // namespace Fenk
