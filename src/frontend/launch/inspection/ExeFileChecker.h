#pragma once

#include <QFutureSynchronizer>
#include <QJsonObject>
#include <QObject>

/// What kind of file a Windows executable is, found without running it by outside tools that start in the
/// background with the object: a scanner of signatures, the "file" command and the reader of version blocks.
/// Each takes at most 30 s. A tool that is missing or answers nonsense leaves the start values, those of an
/// ordinary windowed program.
class ExeFileChecker : public QObject {
    Q_OBJECT

public:
    explicit ExeFileChecker(const QString& path, QObject* parent = nullptr);
    /// Waits for the tools.
    ~ExeFileChecker() override;

    bool isInstaller();  ///< waits
    bool isConsole();    ///< waits for the detection alone
    bool isGame();       ///< waits, unless a file beside it tells

    /// The component that brings the file's runtime, or empty. Does not wait: for after the program's end.
    QString requiredComponent() const;

    /// Waits. {"installer", "console", "dotnet_version", "detects", "brief"}
    QJsonObject info();

    /// The version block; waits for its reader alone. The flag says whether there was an answer at all.
    QJsonObject versionBlock(bool* readable);

    /// Whether things lie beside the file that are not found beside a single setup file.
    bool hasPackagedRuntimeFiles() const;

    bool console = false;   ///< for after the program's end, as the next
    QString dotnetVersion;  ///< of the .NET that the program was made for; empty for others

private:
    void readVersionInfo();
    void detect();
    void scan(const QString& file);
    bool hasBeside(const QStringList& nameFilters) const;

    QString path;
    QJsonObject detects;
    QJsonObject versionInfo;
    bool installerDetected = false;
    bool vb6Detected = false;
    QString brief;
    bool m_versionReadable = false;
    QFuture<void> m_versionTask;
    QFuture<void> m_detectionTask;
    QFutureSynchronizer<void> m_tasks;
};
