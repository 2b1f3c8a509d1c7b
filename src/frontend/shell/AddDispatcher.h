#pragma once

#include <QTimer>
#include <QUrl>
#include <QWidget>

#include "backend/OwnThread.h"
#include "shell/requests/AddRequest.h"

struct ProgramRef;

/// Carries out what the user dropped or pasted in the library: looks at it in the background, asks or refuses
/// over the window, makes bottles of portable programs, and hands everything else on by signals. Owned by its
/// window; GUI thread.
class AddDispatcher : public QObject {
    Q_OBJECT
public:
    explicit AddDispatcher(QWidget* window);

    /// Inputs of AddInputs.
    void take(const QStringList& inputs);
    /// One folder or zip archive.
    void addPortable(const QString& path);

Q_SIGNALS:
    /// A path, or the address of a stored program.
    void openRequested(const QString& path);
    void manifestRequested(const QString& path);
    void addressRequested(const QUrl& address);

private:
    void carryOut(const AddRequest& request);
    void open(const AddItem& item);
    void openInBottle(const AddItem& item);
    void askForSeveral(const QVector<AddItem>& programs);
    void refuse(const QString& errorText);
    void start(const ProgramRef& program);

    QWidget* m_window;
    OwnThread m_thread;  ///< a file may lie on a server that does not answer
    QTimer m_waiting;
};
