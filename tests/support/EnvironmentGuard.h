#pragma once

#include <QByteArray>
#include <QVector>

namespace TestSupport {

/// Sets environment variables of this process and puts the old values back when it goes.
class EnvironmentGuard {
public:
    EnvironmentGuard() = default;
    ~EnvironmentGuard();
    EnvironmentGuard(const EnvironmentGuard&) = delete;
    EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;

    void set(const char* name, const QByteArray& value);
    void unset(const char* name);

private:
    struct Saved {
        QByteArray name;
        QByteArray value;
        bool wasSet;
    };
    void save(const char* name);

    QVector<Saved> m_saved;
};

}  // namespace TestSupport
