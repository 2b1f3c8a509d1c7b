#pragma once

#include <QFile>

#include "support/EnvironmentGuard.h"
#include "support/TestHome.h"

namespace TestSupport {

/// A package manager for the program's tools: it has one package installed and could install another.
class FakePackages {
public:
    FakePackages(const TestHome& home, const QByteArray& installed, const QByteArray& available) {
        // Both are asked for one name, their last argument.
        const QByteArray head = "#!/bin/sh\nfor name; do :; done\n[ \"$name\" = ";
        write(home, "dpkg-query", head + installed + " ] && echo \"$name|install ok installed\"\n");
        write(home, "apt-cache", head + available + " ] && echo \"  Candidate: 1\"\n");
        m_environment.set("PATH", QFile::encodeName(home.path() + "/bin:") + qgetenv("PATH"));
    }

private:
    static void write(const TestHome& home, const QString& name, const QByteArray& script) {
        QFile::setPermissions(home.write("bin/" + name, script + "exit 0\n"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    EnvironmentGuard m_environment;
};

}  // namespace TestSupport
