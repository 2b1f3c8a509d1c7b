#pragma once

#include <QColor>
#include <QFont>
#include <QIcon>
#include <QObject>
#include <QPalette>
#include <memory>

namespace Fenk {

class SystemAppearance;

/// The colours and fonts of all windows by role, light and dark. One instance for the process, made by the
/// first caller on the GUI thread; Application hands its palette to Qt and applies it again on every change.
/// Follows the desktop's preference until someone chooses a type. Painters ask for colours when they paint
/// and keep none.
class Theme : public QObject {
    Q_OBJECT
public:
    enum ColorType { Light, Dark };
    Q_ENUM(ColorType)

    enum Role {
        Window,      ///< window ground
        Surface,     ///< cards, dialogs, menus, fields
        Sunken,      ///< sidebars, logs, tracks
        Border,      ///< the only line colour
        Text,        ///< reading
        Secondary,   ///< descriptions, placeholders
        Disabled,    ///< disabled text and icons only
        Accent,      ///< the suggested action, links, selection edge, progress
        OnAccent,    ///< text on accent, and on a filled danger
        AccentSoft,  ///< hover and selection ground
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

    /// Chooses a type for good; followSystem() gives the choice back to the desktop.
    void setColorType(ColorType type);
    void followSystem();

    /// Loads the user's choice from `path` and keeps later choices there. An unreadable file means the
    /// desktop's preference.
    void setChoiceFile(const QString& path);

    QColor color(Role role) const { return color(m_type, role); }
    QColor color(ColorType type, Role role) const;
    QPalette palette() const { return palette(m_type); }
    QPalette palette(ColorType type) const;

    /// The system's family at the product's sizes; Fixed is the system's fixed family.
    QFont font(FontRole role = Body) const;

    /// An accent of the desktop's own. Ignored, with our accent back in force, when a text in it would not be
    /// readable.
    void setAccent(const QColor& accent);

    /// False when the desktop asks for no animation, or CELLARIX_NO_ANIMATION is set.
    bool animationsEnabled() const { return m_animations; }
    void setAnimationsEnabled(bool enabled);

    /// Milliseconds for an animation: the given time, or 0 when there shall be none.
    int duration(int ms) const { return m_animations ? ms : 0; }

    /// The icon of the desktop's theme, otherwise our own from ":/icons" or the toolkit's; names ending in
    /// "-symbolic" and our one-colour pictures are drawn in the text colour of the theme. An unknown name
    /// gives a null icon.
    static QIcon icon(const QString& name);

    /// A further place where icon themes are looked for, before the desktop's own.
    static void addIconSearchPath(const QString& directory);

    /// Takes the desktop's preference from the palette that Qt started with, then from the desktop portal as
    /// it answers.
    void watchSystem(const QPalette& initial);
    /// Before the application object goes, and the session bus with it.
    void unwatchSystem();

Q_SIGNALS:
    void changed();                                ///< colours, accent or animations are others now
    void themeTypeChanged(Theme::ColorType type);  ///< light became dark or the other way round

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
