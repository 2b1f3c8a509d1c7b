#pragma once

#include <QFutureSynchronizer>
#include <QJsonObject>
#include <QObject>

/// Classifies a Windows executable without running it, with three external tools that the constructor starts
/// in the background: diec, file and the reader of the version block. Each may take up to 30 s. If a tool is
/// missing or prints invalid output, the initial values stay, which describe an ordinary windowed program.
class ExeFileChecker : public QObject {
    Q_OBJECT

public:
    explicit ExeFileChecker(const QString& path, QObject* parent = nullptr);
    /// Waits for the tools.
    ~ExeFileChecker() override;

    bool isInstaller();  ///< waits
    bool isConsole();    ///< waits for diec and file only
    bool isGame();       ///< waits, unless a neighbouring file decides

    /// The component that contains the runtime of the file, or empty. Does not wait: call it after the
    /// program has exited.
    QString requiredComponent() const;

    /// Waits. {"installer", "console", "dotnet_version", "detects", "brief"}
    QJsonObject info();

    /// The version block; waits for its reader only. `readable` is false if the reader failed.
    QJsonObject versionBlock(bool* readable);

    /// Whether the directory contains files that do not come with a single setup file.
    bool hasPackagedRuntimeFiles() const;

    bool console = false;   ///< like `dotnetVersion` valid after the program has exited
    QString dotnetVersion;  ///< the .NET version that the program was built for; empty for others

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
