#pragma once

#include <QString>
#include <QTemporaryDir>

#include "support/EnvironmentGuard.h"

namespace TestSupport {

/// A home directory of the test's own: HOME and the XDG directories (the runtime directory with mode 0700)
/// point below it while the object lives. Make it before anything reads a standard path.
class TestHome {
public:
    TestHome();

    QString path() const { return m_dir.path(); }
    QString data() const { return path() + "/.local/share"; }
    QString config() const { return path() + "/.config"; }
    QString cache() const { return path() + "/.cache"; }
    QString runtime() const { return path() + "/runtime"; }
    QString desktop() const { return path() + "/Desktop"; }

    /// Writes a file below the home, parents included, and gives its absolute path.
    QString write(const QString& relativePath, const QByteArray& content) const;

private:
    QTemporaryDir m_dir;
    EnvironmentGuard m_environment;
};

/// The whole content of a file; empty when it can't be read.
QByteArray readFile(const QString& path);

}  // namespace TestSupport
