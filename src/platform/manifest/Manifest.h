#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>

/// What a manifest says: an application, the bottle in which it works, and how that bottle is made.
/// docs/MANIFEST.md describes the text, ManifestReader reads it, ManifestWriter writes it. A value; what
/// ManifestReader returns has passed every check that needs no bottle. A text that is empty, a size of -1 and
/// an optional without a value were not given.
struct Manifest {
    static const char DefaultWineCommand[];

    /// Facts about the set-up file that the manifest was made with, which users bring themselves.
    struct SetupFile {
        QString version;
        QString sha256;    ///< 64 hexadecimal digits in lower case
        qint64 size = -1;  ///< in bytes
        QString kind;      ///< for people, such as "installer" or "portable"
    };

    struct Contributor {
        QString name;
        QString email;
    };

    struct RegistryValue {
        enum class Type { Text, ExpandText, Texts, Number, LongNumber, Bytes, Deleted };

        QString key;   ///< begins with "HKEY_CURRENT_USER\" or "HKEY_LOCAL_MACHINE\"
        QString name;  ///< empty for the key's default value
        Type type = Type::Text;
        QStringList texts;   ///< one for Text and ExpandText
        quint64 number = 0;  ///< of Number (32 bits) and LongNumber
        QByteArray bytes;
    };

    /// A file that is put into the bottle.
    struct File {
        QString path;  ///< has passed ManifestPath::check()
        QByteArray content;
    };

    /// A Windows program that is run in the new bottle.
    struct Command {
        QString program;  ///< a path as of a file, or the plain name of a program that comes with Wine
        QStringList arguments;
        QString description;  ///< for people
    };

    struct Program {
        QString name;
        QString path;  ///< as Windows has it; or a file name only, when it lies outside of the bottle
        QString arguments;
        QMap<QString, QString> envs;
    };

    /// The keys of bottle.yml's "Parameters".
    struct Parameters {
        std::optional<int> dpi;
        QString renderer;
        QMap<QString, bool> switches;  ///< by key, one of switchNames()

        static const QStringList& switchNames();
    };

    struct Bottle {
        QString windows;  ///< a code that SettingRules knows
        QString dxvk;
        QString vkd3d;
        Parameters parameters;
        QMap<QString, QString> dllOverrides;
        QMap<QString, QString> fontReplacements;
        QStringList dependencies;
        QVector<RegistryValue> registry;
        QVector<File> files;
        QVector<Command> commands;
    };

    QString name;
    QString introduction;
    QString category;
    QString downloadUrl;  ///< http or https
    QString packageSize;  ///< as typed by the contributor, in MB
    SetupFile setup;
    Contributor contributor;
    QString wineCommand = DefaultWineCommand;  ///< the Wine that the bottle needs
    QString wineDeps;                          ///< further packages, as one text for people
    Bottle bottle;
    QVector<Program> programs;
};

bool operator==(const Manifest& one, const Manifest& other);
inline bool operator!=(const Manifest& one, const Manifest& other) {
    return !(one == other);
}
