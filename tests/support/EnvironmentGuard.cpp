#include "support/EnvironmentGuard.h"

#include <QtGlobal>

namespace TestSupport {

EnvironmentGuard::~EnvironmentGuard() {
    while (!m_saved.isEmpty()) {
        const Saved saved = m_saved.takeLast();
        if (saved.wasSet)
            qputenv(saved.name.constData(), saved.value);
        else
            qunsetenv(saved.name.constData());
    }
}

void EnvironmentGuard::set(const char* name, const QByteArray& value) {
    save(name);
    qputenv(name, value);
}

void EnvironmentGuard::unset(const char* name) {
    save(name);
    qunsetenv(name);
}

void EnvironmentGuard::save(const char* name) {
    m_saved.append({name, qgetenv(name), qEnvironmentVariableIsSet(name)});
}

}  // namespace TestSupport
