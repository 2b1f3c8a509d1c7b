#pragma once

#include <QApplication>
#include <QIcon>
#include <QLocale>
#include <QPointer>
#include <QTranslator>
#include <memory>
#include <vector>

namespace Fenk {

class AboutDialog;
class SingleInstance;

/// The application object: installs Style, palette and fonts, follows the theme, loads translations, allows
/// one process per key, and handles the menu entries About and Exit. Set organisation and application name
/// before the first window, since they are part of the path of the theme choice.
class Application : public QApplication {
    Q_OBJECT
public:
    Application(int& argc, char** argv);
    ~Application() override;

    /// False if a process with this key is running; it has received the arguments of this one.
    bool setSingleInstance(const QString& key);

    void setTranslationsDir(const QString& directory) { m_translationsDir = directory; }

    /// Installs `<applicationName>_<locale>.qm` of the first locale that has one, with language and country
    /// or with the language alone, and Qt's own translations. Returns true if the application's were found,
    /// or if the language is English, that of the sources. Texts whose source is not English are in the
    /// English one, which is installed where there is no other.
    bool loadTranslator(const QList<QLocale>& locales = {QLocale::system()});

    void setProductName(const QString& name) { m_productName = name; }
    QString productName() const;
    void setProductIcon(const QIcon& icon);
    QIcon productIcon() const { return m_productIcon; }
    void setApplicationDescription(const QString& text) { m_description = text; }
    QString applicationDescription() const { return m_description; }
    /// Markup of a link, shown unchanged in the About box.
    void setAboutLink(const QString& html) { m_aboutLink = html; }
    QString aboutLink() const { return m_aboutLink; }

public Q_SLOTS:
    void handleAboutAction();
    virtual void handleQuitAction();

Q_SIGNALS:
    /// Another process was started with these arguments and has exited; the first argument is the program.
    void newProcessInstance(qint64 pid, const QStringList& arguments);

private:
    void applyTheme();
    void readThemeChoice();

    std::unique_ptr<SingleInstance> m_instance;
    std::vector<std::unique_ptr<QTranslator>> m_translators;
    QPointer<AboutDialog> m_about;
    QString m_translationsDir;
    QString m_productName;
    QString m_description;
    QString m_aboutLink;
    QIcon m_productIcon;
};

}  // namespace Fenk
