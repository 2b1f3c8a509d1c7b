#include "core/ServiceAgreement.h"

#include <unistd.h>

#include <QCoreApplication>
#include <QLabel>
#include <QLocale>
#include <QVersionNumber>

#include "backend/TextUtils.h"
#include "core/base/BuildInfo.h"
#include "core/base/SettingsStore.h"
#include "fenk/window/Dialog.h"

namespace {

const char VersionKey[] = "basic.update_log.version";
constexpr useconds_t DiskWriteTime = 100 * 1000;  // microseconds

/// Returns what the last start recorded and records this one.
QString lastRecordedVersion() {
    const auto store = settingsStore();
    const QString old = store->getOption(VersionKey).toString();
    store->setOption(VersionKey, BuildInfo::version());
    store->sync();
    return old;
}

bool ask() {
    Fenk::Dialog dialog;
    dialog.setObjectName("service_agreement_dialog");
    dialog.setAccessibleName("service_agreement_dialog");
    dialog.setTitle(QCoreApplication::translate("CellarixApplication", "Welcome to use Cellarix"));
    auto* label =
        new QLabel(QCoreApplication::translate("CellarixApplication", "I have fully read and agree to the %1")
                       .arg(ServiceAgreement::link()));
    label->setTextFormat(Qt::RichText);
    label->setOpenExternalLinks(true);
    label->setTextInteractionFlags(Qt::TextBrowserInteraction);
    label->setObjectName("agreement_text");
    label->setContentsMargins(10, 6, 10, 6);
    label->setAlignment(Qt::AlignCenter);
    dialog.addContent(label);
    dialog.addButton(QCoreApplication::translate("CellarixApplication", "Disagree"));
    dialog.addButton(QCoreApplication::translate("CellarixApplication", "Agree"), true,
                     Fenk::Dialog::ButtonRecommend);
    dialog.moveToCenter();
    return dialog.exec() == 1;
}

}  // namespace

namespace ServiceAgreement {

bool mustAsk(const QString& recordedVersion) {
    return recordedVersion.isEmpty() ||
           QVersionNumber::fromString(recordedVersion) < QVersionNumber::fromString("3.3");
}

QString link() {
    const QString language = QLocale().name().startsWith(QLatin1String("zh")) ? "cn" : "en";
    return TextUtils::linkHtml(BuildInfo::agreementUrl().arg(language),
                               QCoreApplication::translate("Main", "Service Agreement"));
}

bool check() {
    if (!mustAsk(lastRecordedVersion()))
        return true;
    if (ask())
        return true;
    const auto store = settingsStore();
    store->setOption(VersionKey, "");
    store->sync();
    usleep(DiskWriteTime);
    return false;
}

}  // namespace ServiceAgreement
