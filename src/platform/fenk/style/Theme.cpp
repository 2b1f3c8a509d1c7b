#include "fenk/style/Theme.h"

#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHash>
#include <QPointer>
#include <QSettings>

#include "fenk/style/Color.h"
#include "fenk/style/SymbolicIconEngine.h"
#include "fenk/style/SystemAppearance.h"
#include "fenk/style/Tokens.h"

namespace Fenk {

namespace {

constexpr qreal ReadableContrast = 4.5;

struct RoleColors {
    QRgb light;
    QRgb dark;
};

constexpr RoleColors Colors[Theme::RoleCount] = {
    {0xFFF6F7F9, 0xFF191B20},  // Window
    {0xFFFFFFFF, 0xFF22252C},  // Surface
    {0xFFEEF0F4, 0xFF14161A},  // Sunken
    {0xFFDFE3EA, 0xFF383D48},  // Border
    {0xFF1B2130, 0xFFECEFF5},  // Text
    {0xFF596273, 0xFFA3ACBA},  // Secondary
    {0xFF9AA3B2, 0xFF69727F},  // Disabled
    {0xFF2563D9, 0xFF6FA0FF},  // Accent
    {0xFFFFFFFF, 0xFF0E1626},  // OnAccent
    {0xFFE7EFFD, 0xFF24314D},  // AccentSoft
    {0xFFC92A35, 0xFFFF7A80},  // Danger
    {0xFF9A5B00, 0xFFF2B84B},  // Warning
    {0xFF0F7A45, 0xFF57C98C},  // Success
};

QColor ownColor(Theme::ColorType type, Theme::Role role) {
    return QColor(type == Theme::Dark ? Colors[role].dark : Colors[role].light);
}

QColor softAccent(Theme::ColorType type, const QColor& accent) {
    return mix(ownColor(type, Theme::Surface), accent, type == Theme::Dark ? 0.2 : 0.11);
}

/// Cached: a query takes 0.1 ms or more, and every label needs it.
QFont systemFont(QFontDatabase::SystemFont kind) {
    static QHash<int, QFont> known;
    static QPointer<QGuiApplication> watched;
    if (watched != qGuiApp) {
        watched = qGuiApp;
        known.clear();
        const auto forget = [] { known.clear(); };
        QObject::connect(qGuiApp, &QGuiApplication::fontChanged, qGuiApp, forget);
        QObject::connect(qGuiApp, &QGuiApplication::fontDatabaseChanged, qGuiApp, forget);
    }
    auto font = known.find(kind);
    if (font == known.end())
        font = known.insert(kind, QFontDatabase::systemFont(kind));
    return *font;
}

QColor textOn(const QColor& accent) {
    const QColor white(Colors[Theme::OnAccent].light);
    const QColor night(Colors[Theme::OnAccent].dark);
    return contrast(white, accent) >= contrast(night, accent) ? white : night;
}

}  // namespace

Theme* Theme::instance() {
    static Theme theme;
    return &theme;
}

Theme::Theme() : m_animations(qEnvironmentVariableIsEmpty("CELLARIX_NO_ANIMATION")) {}
Theme::~Theme() = default;

bool Theme::accentFits(ColorType type, const QColor& accent) const {
    const QColor grounds[] = {ownColor(type, Window), ownColor(type, Surface), ownColor(type, Sunken),
                              softAccent(type, accent), textOn(accent)};
    for (const QColor& ground : grounds) {
        if (contrast(accent, ground) < ReadableContrast)
            return false;
    }
    return contrast(ownColor(type, Secondary), softAccent(type, accent)) >= ReadableContrast;
}

QColor Theme::color(ColorType type, Role role) const {
    if (m_accent.isValid() && (role == Accent || role == OnAccent || role == AccentSoft) &&
        accentFits(type, m_accent)) {
        return role == Accent ? m_accent : role == OnAccent ? textOn(m_accent) : softAccent(type, m_accent);
    }
    return ownColor(type, role);
}

QPalette Theme::palette(ColorType type) const {
    const auto c = [this, type](Role role) { return color(type, role); };
    QPalette p;
    p.setColor(QPalette::Window, c(Window));
    p.setColor(QPalette::WindowText, c(Text));
    p.setColor(QPalette::Base, c(Surface));
    p.setColor(QPalette::AlternateBase, mix(c(Surface), c(Sunken), 0.5));
    p.setColor(QPalette::Text, c(Text));
    p.setColor(QPalette::PlaceholderText, c(Secondary));
    p.setColor(QPalette::Button, c(Surface));
    p.setColor(QPalette::ButtonText, c(Text));
    p.setColor(QPalette::BrightText, c(Danger));
    p.setColor(QPalette::ToolTipBase, c(Surface));
    p.setColor(QPalette::ToolTipText, c(Text));
    p.setColor(QPalette::Link, c(Accent));
    p.setColor(QPalette::LinkVisited, c(Accent));
    p.setColor(QPalette::Highlight, c(Accent));
    p.setColor(QPalette::HighlightedText, c(OnAccent));
    p.setColor(QPalette::Light, c(Surface));
    p.setColor(QPalette::Midlight, c(Sunken));
    p.setColor(QPalette::Mid, c(Border));
    p.setColor(QPalette::Dark, c(Border));
    p.setColor(QPalette::Shadow, mix(c(Border), Qt::black, 0.4));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::PlaceholderText, QPalette::Link, QPalette::LinkVisited})
        p.setColor(QPalette::Disabled, role, c(Disabled));
    p.setColor(QPalette::Disabled, QPalette::Base, c(Window));
    p.setColor(QPalette::Disabled, QPalette::Button, c(Sunken));
    p.setColor(QPalette::Disabled, QPalette::Highlight, c(Border));
    p.setColor(QPalette::Disabled, QPalette::HighlightedText, c(Disabled));
    return p;
}

QFont Theme::font(FontRole role) const {
    QFont result = systemFont(role == Fixed ? QFontDatabase::FixedFont : QFontDatabase::GeneralFont);
    static const struct {
        int size;
        int weight;
    } kinds[] = {{Tokens::FontBody, QFont::Normal},      {Tokens::FontBody, QFont::Medium},
                 {Tokens::FontSmall, QFont::Normal},     {Tokens::FontSmall, QFont::Medium},
                 {Tokens::FontHeading, QFont::DemiBold}, {Tokens::FontTitle, QFont::DemiBold},
                 {Tokens::FontSmall, QFont::Normal}};
    result.setPixelSize(kinds[role].size);
    result.setWeight(kinds[role].weight);
    return result;
}

void Theme::setColorType(ColorType type) {
    m_follows = false;
    apply(type);
    saveChoice();
}

void Theme::followSystem() {
    m_follows = true;
    apply(m_systemType);
    saveChoice();
}

void Theme::apply(ColorType type) {
    if (m_type == type)
        return;
    m_type = type;
    Q_EMIT changed();
    Q_EMIT themeTypeChanged(type);
}

void Theme::setAccent(const QColor& accent) {
    if (m_accent == accent)
        return;
    m_accent = accent;
    Q_EMIT changed();
}

void Theme::setAnimationsEnabled(bool enabled) {
    if (m_animations == enabled)
        return;
    m_animations = enabled;
    Q_EMIT changed();
}

void Theme::setChoiceFile(const QString& path) {
    m_choiceFile = path;
    const QString choice = QSettings(path, QSettings::IniFormat).value("theme").toString();
    m_follows = choice != "light" && choice != "dark";
    apply(m_follows ? m_systemType : choice == "dark" ? Dark : Light);
}

void Theme::saveChoice() const {
    if (m_choiceFile.isEmpty())
        return;
    QDir().mkpath(QFileInfo(m_choiceFile).absolutePath());
    QSettings file(m_choiceFile, QSettings::IniFormat);
    file.setValue("theme", m_follows ? "system" : m_type == Dark ? "dark" : "light");
    file.sync();
    if (file.status() != QSettings::NoError)
        qWarning("The choice of the theme could not be kept in %s", qUtf8Printable(m_choiceFile));
}

void Theme::watchSystem(const QPalette& initial) {
    m_systemType = initial.color(QPalette::Window).lightness() < 128 ? Dark : Light;
    if (m_follows)
        apply(m_systemType);
    m_system = std::make_unique<SystemAppearance>();
    connect(m_system.get(), &SystemAppearance::darkPreferred, this, [this](bool dark) {
        m_systemType = dark ? Dark : Light;
        if (m_follows)
            apply(m_systemType);
    });
    connect(m_system.get(), &SystemAppearance::accentChosen, this, &Theme::setAccent);
    connect(m_system.get(), &SystemAppearance::animationsPreferred, this, [this](bool wanted) {
        setAnimationsEnabled(wanted && qEnvironmentVariableIsEmpty("CELLARIX_NO_ANIMATION"));
    });
    m_system->start();
}

void Theme::unwatchSystem() {
    m_system.reset();
}

QIcon Theme::icon(const QString& name) {
    return loadIcon(name);
}

void Theme::addIconSearchPath(const QString& directory) {
    QStringList paths = QIcon::themeSearchPaths();
    paths.removeAll(directory);
    paths.prepend(directory);
    QIcon::setThemeSearchPaths(paths);
}

}  // namespace Fenk
