#pragma once

#include <QPointer>
#include <QWidget>

#include "shell/requests/AddRequest.h"

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

    /// Checks and shows inputs of AddInputs, which the user has dropped or pasted elsewhere.
    void add(const QStringList& inputs);
    /// Shows what has been checked elsewhere.
    void show(const AddRequest& request);
    /// Empties the tab that shows this file or folder.
    void forget(const QString& path);
    void focusTab();

Q_SIGNALS:
    /// The user wants this: programs to be run, or a folder or .zip as a program in a bottle of its own.
    void chosen(const AddRequest& request);
    /// The user is done here.
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void onChosen(const AddRequest& request);
    void installManifest(const QByteArray& manifest);
    void tell(const QString& errorText);

    AddAppsHelperWidget* m_helper;
    Fenk::SuggestButton* m_run;
    QPointer<YamlProgramInstallerSession> m_session;
};
