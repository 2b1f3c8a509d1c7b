#include "store/view/StoreImages.h"

#include <QtGlobal>

// Q_INIT_RESOURCE declares a function of the global scope.
static void loadResources() {
    Q_INIT_RESOURCE(resources_store);
}

QString storeImage(const char* name) {
    static const bool loaded = (loadResources(), true);
    Q_UNUSED(loaded)
    return QLatin1String(":/images/") + QLatin1String(name);
}
