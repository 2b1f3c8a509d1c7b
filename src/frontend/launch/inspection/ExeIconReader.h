#pragma once

#include <QIcon>
#include <QObject>
#include <QProcess>
#include <QTemporaryDir>
#include <memory>

/// Takes the icon out of a Windows program, by a tool of its own that runs in the background with low
/// priority and at most half a minute. Its destruction ends the tool. GUI thread.
class ExeIconReader : public QObject {
    Q_OBJECT
public:
    explicit ExeIconReader(const QString& exePath, QObject* parent = nullptr);
    ~ExeIconReader() override;

    /// Returns at once. Without effect on files that are no programs.
    void start();

Q_SIGNALS:
    /// With all sizes of the icon. Never comes for a file without one.
    void ready(const QIcon& icon);

private:
    bool chooseDirectory();
    void onFinished(int exitCode, QProcess::ExitStatus status);

    QString m_exePath;
    QString m_iconFile;
    std::unique_ptr<QTemporaryDir> m_ownDirectory;  ///< where the common one can't be used
    std::unique_ptr<QProcess> m_tool;
};
