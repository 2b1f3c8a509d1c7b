#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace TestSupport {

TestHome::TestHome() {
    Q_ASSERT(m_dir.isValid());
    for (const QString& directory : {data(), config(), cache(), runtime(), desktop()})
        QDir().mkpath(directory);
    QFile::setPermissions(runtime(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    m_environment.set("HOME", QFile::encodeName(path()));
    m_environment.set("XDG_DATA_HOME", QFile::encodeName(data()));
    m_environment.set("XDG_CONFIG_HOME", QFile::encodeName(config()));
    m_environment.set("XDG_STATE_HOME", QFile::encodeName(path() + "/.local/state"));
    m_environment.set("XDG_CACHE_HOME", QFile::encodeName(cache()));
    m_environment.set("XDG_RUNTIME_DIR", QFile::encodeName(runtime()));
}

QString TestHome::write(const QString& relativePath, const QByteArray& content) const {
    const QString file = path() + "/" + relativePath;
    QDir().mkpath(QFileInfo(file).path());
    QFile out(file);
    if (!out.open(QIODevice::WriteOnly) || out.write(content) != content.size())
        qFatal("can't write %s", qPrintable(file));
    return file;
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace TestSupport
