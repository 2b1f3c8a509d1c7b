#pragma once

#include <QString>

namespace Fenk {

/// Name and version of the operating system. "/etc/os-version" (an INI-like file) takes precedence over
/// "/etc/os-release", field by field. Fields of a missing file are empty.
class SystemInfo {
public:
    static constexpr const char* OsVersionFile = "/etc/os-version";
    static constexpr const char* OsReleaseFile = "/etc/os-release";

    explicit SystemInfo(const QString& osVersionFile = OsVersionFile,
                        const QString& osReleaseFile = OsReleaseFile);

    QString productType() const { return m_productType; }    ///< "debian", "Desktop"
    QString systemName() const { return m_systemName; }      ///< "Debian GNU/Linux"
    QString editionName() const { return m_editionName; }    ///< "bookworm", "Community"
    QString majorVersion() const { return m_majorVersion; }  ///< "12"
    QString minorVersion() const { return m_minorVersion; }  ///< "7"; empty when there is none
    QString osBuild() const { return m_osBuild; }            ///< empty where the system tells none
    /// 1 Professional, 2 Home, 3 Community, 10 E, by the edition's name; 0 for any other.
    int editionType() const;

private:
    QString m_productType;
    QString m_systemName;
    QString m_editionName;
    QString m_majorVersion;
    QString m_minorVersion;
    QString m_osBuild;
};

}  // namespace Fenk
