#include "core/base/SettingsStore.h"

#include <QDebug>
#include <QDir>
#include <QStandardPaths>

#include "fenk/system/Singleton.h"

// A static library's resources are dropped by the linker unless asked for, and only outside of a namespace.
static void initBaseResources() {
    Q_INIT_RESOURCE(resources_base);
}

namespace {

class SettingsStore : public Fenk::Singleton<SettingsStore> {
public:
    std::shared_ptr<Fenk::Settings> settings() const { return m_settings; }

private:
    friend class Fenk::Singleton<SettingsStore>;

    SettingsStore() {
        initBaseResources();
        const QString directory = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
        if (!QDir().mkpath(directory))
            qWarning() << "cannot create the settings directory" << directory;
        QString error;
        m_settings = Fenk::Settings::fromJson(QStringLiteral(":/settings/cellarix.json"),
                                              directory + "/settings.conf", &error);
        if (!m_settings)
            qFatal("the settings description is broken: %s", qPrintable(error));
    }

    std::shared_ptr<Fenk::Settings> m_settings;
};

}  // namespace

std::shared_ptr<Fenk::Settings> settingsStore() {
    return SettingsStore::instance()->settings();
}
