#pragma once

#include <QIcon>
#include <QJsonObject>
#include <QObject>

class ExeFileChecker;
class ExeIconReader;

/// The Windows file of a launch, and what is known of it without running it. Without a path it stands for a
/// program that is stored in a bottle, and reads as an ordinary windowed program that has no name, key or
/// version block. Owned by an ExeFileExecutor; GUI thread.
///
/// Construction blocks until the file's key parts (at most 11 MiB) and its version block have been read. The
/// detection of its kind goes on in the background. A file that can't be read has no key and no version
/// block.
class LaunchedFile : public QObject {
    Q_OBJECT
public:
    LaunchedFile(const QString& path, QObject* parent);
    /// Leaves a running detection to end by itself.
    ~LaunchedFile() override;

    const QString& path() const { return m_path; }
    bool isStoredProgram() const { return m_path.isEmpty(); }
    bool isReadable() const;
    bool isPackage() const;  ///< of Windows Installer
    bool is32BitOnly() const;
    bool isInstaller();  ///< waits for the whole detection
    bool isConsole();    ///< waits for a part of the detection

    QString displayName();   ///< the product's name, or else the file's
    QJsonObject peInfo();    ///< the version block; runs the reader again if it gave no answer before
    QJsonObject fileInfo();  ///< as exeFileInfo() tells it, without running the tools again; waits
    QString md5();           ///< of the key parts; see partialFileMd5
    QJsonObject peInfoSoFar() const { return m_peInfo; }  ///< runs nothing
    /// Never waits: the first call starts to read the file's own icon, and until iconReady the desktop's
    /// ordinary icon for programs stands in for it.
    QIcon icon();

    // For after the program's end: they don't wait.
    QString dotnetVersion() const;
    QString requiredComponent() const;  ///< that brings the file's runtime

Q_SIGNALS:
    /// The file's own icon, in all its sizes. Comes at most once, and only for a file that has one.
    void iconReady(const QIcon& icon);

private:
    void inspect();

    QString m_path;
    ExeFileChecker* m_checker = nullptr;
    ExeIconReader* m_iconReader = nullptr;
    QIcon m_icon;
    QJsonObject m_peInfo;
    bool m_peInfoRead = false;
    QString m_md5;
};
