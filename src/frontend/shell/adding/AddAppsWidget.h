#pragma once

#include <QPointer>
#include <QWidget>

#include "shell/adding/AddedFile.h"

class AddAppsHelperWidget;
class YamlProgramInstallerSession;

namespace Fenk {
class SuggestButton;
}

/// The page that adds a program to the library, from a file, an address or a folder. Installs what a manifest
/// describes; all else is its owner's to run. GUI thread; waits for nothing.
class AddAppsWidget : public QWidget {
    Q_OBJECT
public:
    explicit AddAppsWidget(QWidget* parent = nullptr);

    /// Shows a file, a folder or an address that the user has dropped or pasted elsewhere.
    void add(const AddedLink& link);
    void focusTab();

Q_SIGNALS:
    /// The user wants this .exe or .msi to be run.
    void openRequested(const QString& path);
    /// The user wants this folder or .zip as a program in a bottle of its own.
    void portableRequested(const QString& path);
    /// The user is done here.
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void installManifest(const QByteArray& manifest);
    void leave();

    AddAppsHelperWidget* m_helper;
    Fenk::SuggestButton* m_run;
    QPointer<YamlProgramInstallerSession> m_session;
};
