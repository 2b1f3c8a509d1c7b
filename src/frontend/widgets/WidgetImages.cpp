#include "widgets/WidgetImages.h"

#include <QtGlobal>

#include "fenk/style/Theme.h"

// Q_INIT_RESOURCE declares a function of the global scope.
static void loadResources() {
    Q_INIT_RESOURCE(resources_widgets);
}

QString widgetImage(const char* name) {
    static const bool loaded = (loadResources(), true);
    Q_UNUSED(loaded)
    return QLatin1String(":/images/") + QLatin1String(name);
}

QIcon warningIcon() {
    const QIcon icon = Fenk::Theme::icon("dialog-warning");
    return icon.isNull() ? QIcon(widgetImage("warning.svg")) : icon;
}
