#include "bottleservice/wine/WineBuild.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include "bottleservice/wine/SlimPrefix.h"

QString WineBuild::checksum(const QString& wine) {
    constexpr int HeaderBytes = 1024;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const QStringList directories = wine.isEmpty() ? QStringList() : SlimPrefix::peDirectories(wine);
    for (const QString& directory : directories) {
        hash.addData(directory.section('/', -1).toUtf8());
        for (const QString& name : QDir(directory).entryList(QDir::Files, QDir::Name)) {
            QFile file(directory + '/' + name);
            if (file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
                hash.addData(QString("%1 %2\n").arg(name).arg(file.size()).toUtf8() + file.read(HeaderBytes));
        }
    }
    return directories.isEmpty() ? QString() : QString::fromLatin1(hash.result().toHex());
}
