#include "core/ProductFacts.h"

#include "core/ServiceAgreement.h"
#include "core/base/BuildInfo.h"
#include "fenk/style/Theme.h"
#include "fenk/window/Application.h"

void nameProduct(Fenk::Application& application) {
    QCoreApplication::setApplicationVersion(BuildInfo::version());
    application.setProductIcon(Fenk::Theme::icon("cellarix"));
    application.setProductName(QCoreApplication::translate("Main", "Cellarix"));
    application.setApplicationDescription(
        QCoreApplication::translate("Main",
                                    "Cellarix is a tool for running/packing Windows applications. It "
                                    "supports running Windows applications "
                                    "directly and packing Windows applications into deb format."));
    application.setAboutLink(ServiceAgreement::link());
}
