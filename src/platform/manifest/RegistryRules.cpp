#include "manifest/RegistryRules.h"

#include <QRegularExpression>
#include <QStringList>

#include "manifest/SettingRules.h"

namespace RegistryRules {

namespace {

const char StartsPrograms[] = "starts programs, which only Commands may";
const char StartsOnCrash[] = "starts a program when another one crashes";
const char StartsInstead[] = "starts a program in place of another one";
const char LoadsCode[] = "loads code into programs";
const char StartsNative[] = "starts programs outside of Wine";
const char LeadsOutside[] = "leads to files outside of the bottle";

struct Rule {
    const char* key;    ///< below either hive, without Wow6432Node; what begins with it is meant
    const char* value;  ///< null for every value
    const char* reason;
};

const Rule Rules[] = {
    // Run, RunOnce, RunOnceEx, RunServices, RunServicesOnce.
    {R"(software\microsoft\windows\currentversion\run)", nullptr, StartsPrograms},
    {R"(software\microsoft\windows\currentversion\policies\explorer\run\)", nullptr, StartsPrograms},
    {R"(software\microsoft\windows nt\currentversion\winlogon\)", nullptr, StartsPrograms},
    {R"(software\microsoft\windows nt\currentversion\windows\)", "load", StartsPrograms},
    {R"(software\microsoft\windows nt\currentversion\windows\)", "run", StartsPrograms},
    {R"(software\microsoft\windows nt\currentversion\windows\)", "appinit_dlls", LoadsCode},
    {R"(software\microsoft\windows nt\currentversion\windows\)", "loadappinit_dlls", LoadsCode},
    {R"(software\microsoft\windows nt\currentversion\aedebug\)", "debugger", StartsOnCrash},
    {R"(software\microsoft\windows nt\currentversion\image file execution options\)", nullptr, StartsInstead},
    {R"(software\microsoft\windows nt\currentversion\silentprocessexit\)", nullptr, StartsInstead},
    {R"(software\microsoft\active setup\installed components\)", "stubpath", StartsPrograms},
    {R"(software\microsoft\command processor\)", "autorun", StartsPrograms},
    {R"(software\wine\winebrowser\)", nullptr, StartsNative},
    {R"(software\wine\printing\)", nullptr, StartsNative},
    {R"(software\wine\ports\)", nullptr, LeadsOutside},
    {R"(software\microsoft\windows nt\currentversion\ports\)", nullptr, StartsNative},
    {R"(system\currentcontrolset\control\print\)", nullptr, StartsNative},
    {R"(system\currentcontrolset\control\session manager\)", nullptr, StartsPrograms},
    {R"(system\currentcontrolset\control\lsa\)", nullptr, LoadsCode},
    {R"(system\currentcontrolset\control\securityproviders\)", nullptr, LoadsCode},
    {R"(system\currentcontrolset\services\)", nullptr, StartsPrograms},
};

/// Programs that Wine starts outside of itself get these variables too.
const char* const Environments[] = {
    R"(environment\)",
    R"(volatile environment\)",
    R"(system\currentcontrolset\control\session manager\environment\)",
};

/// In lower case, without the hive, and with one name for each key that has several.
QString comparable(const QString& key) {
    static const QRegularExpression controlSet("\\Acontrolset[0-9]+\\z");
    QStringList parts = key.toLower().split('\\').mid(1);
    parts.removeAll("wow6432node");
    for (QString& part : parts)
        part.replace(controlSet, "currentcontrolset");
    return parts.join('\\') + '\\';
}

}  // namespace

QString fault(const QString& key, const QString& name) {
    const QString place = comparable(key);
    for (const char* environment : Environments) {
        if (place.startsWith(QLatin1String(environment)))
            return SettingRules::isSharedVariable(name)
                       ? QString()
                       : QString("must not set a variable that native programs go by");
    }
    for (const Rule& rule : Rules) {
        if (place.startsWith(QLatin1String(rule.key)) &&
            (!rule.value || name.compare(QLatin1String(rule.value), Qt::CaseInsensitive) == 0))
            return QString("must not be one that %1").arg(rule.reason);
    }
    return {};
}

}  // namespace RegistryRules
