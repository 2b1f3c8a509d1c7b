#pragma once

#include <QIcon>
#include <QObject>
#include <QProcess>
#include <QTemporaryDir>
#include <memory>

/// Extracts the icon of a Windows program. The extractor runs as a background process with low priority for
/// at most 30 s and is ended by the destructor. GUI thread.
class ExeIconReader : public QObject {
    Q_OBJECT
public:
    explicit ExeIconReader(const QString& exePath, QObject* parent = nullptr);
    ~ExeIconReader() override;

    /// Returns at once. Does nothing for files that are no programs.
    void start();

Q_SIGNALS:
    /// The icon with all its sizes. Not emitted for a file without an icon.
    void ready(const QIcon& icon);

private:
    bool chooseDirectory();
    void onFinished(int exitCode, QProcess::ExitStatus status);

    QString m_exePath;
    QString m_iconFile;
    std::unique_ptr<QTemporaryDir> m_ownDirectory;  ///< used when the shared directory is not usable
    std::unique_ptr<QProcess> m_tool;
};
