#include "shell/configuration/fonts/FontNames.h"

#include <QDebug>
#include <QFile>
#include <QFontDatabase>
#include <QJsonDocument>

// Q_INIT_RESOURCE declares a function of the global scope.
static void loadResources() {
    Q_INIT_RESOURCE(resources_fonts);
}

QStringList FontNames::ofWindows() {
    loadResources();
    QFile file(":/settings/windows-fonts.json");
    if (!file.open(QIODevice::ReadOnly))
        qWarning() << "cannot open" << file.fileName();
    return QJsonDocument::fromJson(file.readAll()).toVariant().toStringList();
}

QStringList FontNames::ofSystem() {
    QStringList families;
    for (const QString& family : QFontDatabase().families())
        families << withoutFoundry(family);
    families.removeDuplicates();
    return families;
}

QString FontNames::withoutFoundry(const QString& family) {
    const int foundry = family.indexOf(" [");
    return foundry > 0 && family.endsWith(']') ? family.left(foundry) : family;
}

QStringList FontNames::replacedByDefault() {
    return {"Arial",           "Arial Black", "Arial Bold", "Microsoft Sans Serif",
            "Microsoft YaHei", "SimSun",      "宋体",       "微软雅黑"};
}

QString FontNames::defaultReplacement() {
    return QStringLiteral("WenQuanYi Micro Hei");
}
