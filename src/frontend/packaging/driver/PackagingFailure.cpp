#include "packaging/driver/PackagingFailure.h"

#include <QCoreApplication>

namespace {

const QLatin1String Prefix("packager: cause ");

struct Row {
    const char* cause;
    const char* text;  ///< %1 is the subject
};

const Row Table[] = {
    {"installing", QT_TRANSLATE_NOOP("DoPackageDialog",
                                     "Something is being installed into the bottle. Try again when that is "
                                     "done.")},
    {"running",
     QT_TRANSLATE_NOOP("DoPackageDialog", "Programs run in the bottle. Close them and try again.")},
    {"no-room",
     QT_TRANSLATE_NOOP("DoPackageDialog",
                       "There is not enough room where packages are saved: up to %1 MiB are needed.")},
    {"not-writable", QT_TRANSLATE_NOOP("DoPackageDialog", "Nothing can be saved in %1.")},
    {"same-place", QT_TRANSLATE_NOOP("DoPackageDialog", "Two files of the package have the same place: %1")},
    {"contains-bottle",
     QT_TRANSLATE_NOOP("DoPackageDialog",
                       "The folder %1 has the bottle itself in it. Choose a smaller one.")},
    {"bottle-busy",
     QT_TRANSLATE_NOOP("DoPackageDialog",
                       "The bottle is being packed or changed already. Try again when that is done.")},
    {"no-tool",
     QT_TRANSLATE_NOOP("DoPackageDialog", "The program %1 is not installed. Install it and try again.")},
    {"long-name",
     QT_TRANSLATE_NOOP("DoPackageDialog",
                       "The package's file name would be too long: %1. Choose a shorter name or version.")},
    {"foreign-name",
     QT_TRANSLATE_NOOP("DoPackageDialog", "Another program's package is named %1. Choose another name.")},
    {"wide-folder",
     QT_TRANSLATE_NOOP("DoPackageDialog",
                       "The folder %1 is too close to the root of the disk. Choose a smaller one.")},
    {"line-break", QT_TRANSLATE_NOOP("DoPackageDialog",
                                     "A file has a line break in its name: %1. Rename it and try again.")},
    {"unreadable", QT_TRANSLATE_NOOP("DoPackageDialog", "%1 cannot be read.")},
    {"file-error", QT_TRANSLATE_NOOP("DoPackageDialog", "%1 could not be read or written.")},
    {"unreadable-settings",
     QT_TRANSLATE_NOOP("DoPackageDialog", "The settings of the bottle cannot be read: %1")},
    {"no-bottle", QT_TRANSLATE_NOOP("DoPackageDialog", "There is no bottle named %1.")},
    {"bad-name", QT_TRANSLATE_NOOP("DoPackageDialog", "%1 is not a valid package name.")},
    {"bad-version", QT_TRANSLATE_NOOP("DoPackageDialog", "%1 is not a valid package version.")},
    {"no-architecture", QT_TRANSLATE_NOOP("DoPackageDialog", "No architecture is chosen for the package.")},
    {"no-program",
     QT_TRANSLATE_NOOP("DoPackageDialog", "No program of the bottle is chosen for the package.")},
    {"program-gone", QT_TRANSLATE_NOOP("DoPackageDialog",
                                       "The chosen programs are not in the bottle any more. Choose again.")},
    {"not-described",
     QT_TRANSLATE_NOOP("DoPackageDialog",
                       "The package settings are missing. Fill in the form of the package again.")},
    {"bad-program",
     QT_TRANSLATE_NOOP("DoPackageDialog",
                       "The package settings are damaged. Fill in the form of the package again.")},
    {"secret-folder",
     QT_TRANSLATE_NOOP("DoPackageDialog",
                       "The folder %1 has keys or settings of your own. Choose another one.")},
    {"internal",
     QT_TRANSLATE_NOOP("DoPackageDialog",
                       "The package could not be made because of an error in Cellarix. The log tells more.")},
    {"no-windows-program", QT_TRANSLATE_NOOP("DoPackageDialog", "%1 is not a Windows program.")},
    {"too-large",
     QT_TRANSLATE_NOOP("DoPackageDialog", "The program takes %1 GB. A package can hold at most 10 GB.")},
    {"compressor",
     QT_TRANSLATE_NOOP("DoPackageDialog", "The package could not be written. The disk may be full.")},
    {"changed",
     QT_TRANSLATE_NOOP("DoPackageDialog",
                       "The file %1 has changed meanwhile. Close the programs of the bottle and try "
                       "again.")},
};

}  // namespace

bool PackagingFailure::take(const QString& line) {
    if (!line.startsWith(Prefix))
        return false;
    const QString rest = line.mid(Prefix.size());
    m_cause = rest.section(':', 0, 0).trimmed();
    m_subject = rest.section(':', 1).trimmed();
    return true;
}

QString PackagingFailure::text() const {
    for (const Row& row : Table) {
        if (m_cause != QLatin1String(row.cause))
            continue;
        const QString text = QCoreApplication::translate("DoPackageDialog", row.text);
        return text.contains("%1") ? text.arg(m_subject) : text;
    }
    return {};
}
