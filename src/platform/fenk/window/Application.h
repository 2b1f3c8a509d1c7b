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

/// The application object of a program with our look: puts Style, palette and fonts in force, follows the
/// theme, loads translations, lets one process per key run, and answers the menu entries About and Exit. The
/// organisation's and the application's name should be set before the first window, since the choice of the
/// theme is kept under them.
class Application : public QApplication {
    Q_OBJECT
public:
    Application(int& argc, char** argv);
    ~Application() override;

    /// False when a process with this key runs already; it has got this process's arguments then.
    bool setSingleInstance(const QString& key);

    void setTranslationsDir(const QString& directory) { m_translationsDir = directory; }

    /// Installs `<applicationName>_<locale>.qm` of the first locale that has one, trying the language alone
    /// after language and country, and Qt's own texts beside it. True if the program's own were found; a
    /// language that is the one of the sources needs none, and is no failure.
    bool loadTranslator(const QList<QLocale>& locales = {QLocale::system()});

    void setProductName(const QString& name) { m_productName = name; }
    QString productName() const;
    void setProductIcon(const QIcon& icon);
    QIcon productIcon() const { return m_productIcon; }
    void setApplicationDescription(const QString& text) { m_description = text; }
    QString applicationDescription() const { return m_description; }
    /// Markup of one link, shown in the About box as it is.
    void setAboutLink(const QString& html) { m_aboutLink = html; }
    QString aboutLink() const { return m_aboutLink; }

public Q_SLOTS:
    void handleAboutAction();
    virtual void handleQuitAction();

Q_SIGNALS:
    /// Another process was started with these arguments and has left; the first argument is the program.
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
