#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>

/// A program of the bottle and how it goes into the package: a value of pkgcfg/pkgsrc.json, keyed by the
/// program's id. Name, icon and selection are not in the file; only selected programs are.
struct PackageEntry {
    QString path;          ///< of the program's file, a Unix path
    QString pathPackaged;  ///< the same file as it will lie in the package's bottle
    QString dirToPackage;  ///< goes into the package with the program; may be empty
    bool onlyCopyExe = false;
    bool inBottles = false;  ///< nothing is to be copied
    bool isLnkfile = false;

    QString name;
    QString icon;
    bool selected = false;

    /// Reads the stored choices. The file lies in the bottle, where programs can write: path and place come
    /// from the bottle's configuration, not from here.
    void read(const QJsonObject& object) {
        pathPackaged = object.value("path_packaged").toString();
        dirToPackage = object.value("dir_to_package").toString();
        onlyCopyExe = object.value("only_copy_exe").toBool();
        isLnkfile = object.value("is_lnkfile").toBool(isLnkfile);
    }

    QJsonObject toJson() const {
        return {{"path", path},
                {"path_packaged", pathPackaged},
                {"dir_to_package", dirToPackage},
                {"only_copy_exe", onlyCopyExe},
                {"in_bottles", inBottles},
                {"is_lnkfile", isLnkfile}};
    }
};

using PackageEntries = QMap<QString, PackageEntry>;  ///< by the program's id
