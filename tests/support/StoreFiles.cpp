#include "support/StoreFiles.h"

#include <QDir>
#include <QFile>

namespace TestSupport {

StoreFiles::StoreFiles() {
    QDir(path()).mkdir("apps");
    write("categories.yml",
          "- {id: 1, names: {en: Office, zh: 办公}, sort: 2}\n- {id: 2, names: {en: Tools, zh: 工具}, sort: "
          "1}\n");
}

void StoreFiles::write(const QString& file, const QByteArray& content) const {
    const QString name = path(file);
    QDir().mkpath(name.section('/', 0, -2));
    // By a rename, as no reader may see half of a file; without QSaveFile's waits for the disk.
    QFile target(name + ".new");
    const bool isWritten = target.open(QIODevice::WriteOnly) && target.write(content) == content.size();
    target.close();
    if (!isWritten || ::rename(qPrintable(target.fileName()), qPrintable(name)) != 0)
        qFatal("can't write %s", qPrintable(name));
}

void StoreFiles::remove(const QString& appInfoId) const {
    QDir(path("apps/" + appInfoId)).removeRecursively();
}

void StoreFiles::add(const QString& appInfoId, const App& app) const {
    const QString directory = "apps/" + appInfoId + '/';
    write(directory + "store.yml", storeText(app));
    write(directory + "manifest.yml", manifestText(app.english));
    write(directory + "icon.svg", iconText());
}

QByteArray StoreFiles::storeText(const App& app) {
    return QString(
               "appId: %1\nnames: {en: \"%2\", zh: \"%3\"}\ncategory: %4\nversion: \"1.2\"\nsize: 123456789\n"
               "brief: {en: An editor of %2, zh: %3的编辑器}\ndescription: {en: \"One\\ntwo\", zh: 一二}\n"
               "score: %5\nrecommend: %6\ncontributor: {name: Ann, email: ann@store.example}\n"
               "site: https://app.example\ndownload: https://app.example/setup.exe\n")
               .arg(app.appId)
               .arg(app.english, app.chinese)
               .arg(app.category)
               .arg(app.score)
               .arg(app.recommend)
               .toUtf8() +
           QString("updated: %1\ninstallations: %2\n").arg(app.updated).arg(app.installations).toUtf8();
}

QByteArray StoreFiles::manifestText(const QString& name) {
    return QString("Name: \"%1\"\nDebInfo: {wine_cmd: lumora-wine10-stable}\n").arg(name).toUtf8();
}

QByteArray StoreFiles::iconText() {
    return R"(<svg xmlns="http://www.w3.org/2000/svg" width="8" height="8"><path d="M0 0h8v8z"/></svg>)";
}

}  // namespace TestSupport
