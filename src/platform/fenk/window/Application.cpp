#include "fenk/window/Application.h"

#include <QDir>
#include <QLibraryInfo>
#include <QStandardPaths>
#include <QToolTip>

#include "fenk/instance/SingleInstance.h"
#include "fenk/style/Style.h"
#include "fenk/style/Theme.h"
#include "fenk/window/AboutDialog.h"

static void initFenkResources() {
    Q_INIT_RESOURCE(fenk_icons);
}

namespace Fenk {

Application::Application(int& argc, char** argv) : QApplication(argc, argv) {
    initFenkResources();
    setAttribute(Qt::AA_UseHighDpiPixmaps);
    // Makes programs' own icons available without a desktop theme.
    QIcon::setFallbackThemeName("hicolor");
    if (QIcon::themeName().isEmpty())
        QIcon::setThemeName("hicolor");
    Theme* theme = Theme::instance();
    theme->watchSystem(palette());
    setStyle(new Style);
    applyTheme();
    connect(theme, &Theme::changed, this, &Application::applyTheme);
    connect(this, &QCoreApplication::applicationNameChanged, this, &Application::readThemeChoice);
    connect(this, &QCoreApplication::organizationNameChanged, this, &Application::readThemeChoice);
}

Application::~Application() {
    Theme::instance()->unwatchSystem();
}

void Application::applyTheme() {
    const Theme* theme = Theme::instance();
    setPalette(theme->palette());
    setFont(theme->font());
    for (const char* strong : {"QPushButton", "QTabBar"})
        setFont(theme->font(Theme::BodyStrong), strong);
    setFont(theme->font(Theme::SmallStrong), "QHeaderView");
    for (const char* small : {"QTipLabel", "QProgressBar"})
        setFont(theme->font(Theme::Small), small);
    QToolTip::setPalette(theme->palette());
    QToolTip::setFont(theme->font(Theme::Small));
}

void Application::readThemeChoice() {
    if (organizationName().isEmpty() || applicationName().isEmpty())
        return;
    Theme::instance()->setChoiceFile(QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) +
                                     "/appearance.ini");
}

bool Application::setSingleInstance(const QString& key) {
    m_instance = std::make_unique<SingleInstance>(key);
    connect(m_instance.get(), &SingleInstance::newProcessInstance, this, &Application::newProcessInstance);
    const QStringList handed = SingleInstance::withAbsoluteFiles(arguments(), QDir::currentPath());
    return m_instance->claim(handed) == SingleInstance::Claim::First;
}

bool Application::loadTranslator(const QList<QLocale>& locales) {
    const auto install = [this](std::unique_ptr<QTranslator> translator) {
        installTranslator(translator.get());
        m_translators.push_back(std::move(translator));
    };
    const QString english = applicationName() + "_en";
    for (const QLocale& locale : locales) {
        auto own = std::make_unique<QTranslator>();
        const bool isEnglish = locale.language() == QLocale::English || locale.language() == QLocale::C;
        const bool found = own->load(locale, applicationName(), "_", m_translationsDir) ||
                           (isEnglish && own->load(english, m_translationsDir));
        if (found || isEnglish) {
            auto qt = std::make_unique<QTranslator>();
            if (qt->load(locale, "qtbase", "_", QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
                install(std::move(qt));
        }
        if (found) {
            qInfo("Texts from %s", qUtf8Printable(own->filePath()));
            install(std::move(own));
            return true;
        }
        if (isEnglish)
            return true;
    }
    if (auto own = std::make_unique<QTranslator>(); own->load(english, m_translationsDir))
        install(std::move(own));
    qWarning("No translation of %s in %s", qUtf8Printable(applicationName()),
             qUtf8Printable(m_translationsDir));
    return false;
}

QString Application::productName() const {
    return m_productName.isEmpty() ? applicationDisplayName() : m_productName;
}

void Application::setProductIcon(const QIcon& icon) {
    m_productIcon = icon;
    setWindowIcon(icon);
}

void Application::handleAboutAction() {
    if (!m_about) {
        m_about = new AboutDialog(
            {m_productIcon, productName(), applicationVersion(), m_description, m_aboutLink}, activeWindow());
        m_about->setAttribute(Qt::WA_DeleteOnClose);
        m_about->moveToCenter();
    }
    m_about->show();
    m_about->raise();
    m_about->activateWindow();
}

void Application::handleQuitAction() {
    quit();
}

}  // namespace Fenk
