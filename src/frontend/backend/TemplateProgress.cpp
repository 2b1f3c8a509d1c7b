#include "backend/TemplateProgress.h"

#include <QDBusConnection>

TemplateProgress::TemplateProgress(QObject* parent) : QObject(parent) {
    QDBusConnection::sessionBus().connect("com.lumora.LumoraWineLauncher", "/com/lumora/Manager/Templates",
                                          "com.lumora.Manager.Templates", "preparing", this,
                                          SIGNAL(preparing(QString, int)));
}
