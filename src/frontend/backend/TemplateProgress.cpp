#include "backend/TemplateProgress.h"

#include <QDBusConnection>

#include "backend/ServiceNames.h"

TemplateProgress::TemplateProgress(QObject* parent) : QObject(parent) {
    QDBusConnection::sessionBus().connect(ServiceNames::Service, QString(ServiceNames::Path) + "/Templates",
                                          QString(ServiceNames::Interface) + ".Templates", "preparing", this,
                                          SIGNAL(preparing(QString, int)));
}
