#pragma once

#include <QPointer>
#include <QWidget>

#include "shell/requests/AddReading.h"

struct BusResult;
struct ProgramRef;

namespace Fenk {
class Dialog;
}

/// Carries out what the user dropped or pasted in the library: looks at it in the background, asks or refuses
/// over the window, makes bottles of portable programs, and hands everything else on by signals. Owned by its
/// window; GUI thread.
class AddDispatcher : public QObject {
    Q_OBJECT
public:
    explicit AddDispatcher(QWidget* window);

    /// Inputs of AddInputs. One program is opened at once; what makes more of an effect is shown before.
    void take(const QStringList& inputs);
    /// Programs and portable programs that the user has chosen.
    void carryOut(const AddRequest& request);
    /// One folder or zip archive.
    void addPortable(const QString& path);

Q_SIGNALS:
    /// A path, or the address of a stored program.
    void openRequested(const QString& path);
    /// The page that adds programs is to show this.
    void pageRequested(const AddRequest& request);
    /// A portable program has got its bottle.
    void portableAdded(const QString& path);

private:
    void onRead(const AddRequest& request);
    void showReading();
    void open(const AddItem& item);
    void openInBottle(const AddItem& item);
    void startInBottle(const AddItem& item, const BusResult& bottle);
    void enterInBottle(const AddItem& item);
    void askForSeveral(const QVector<AddItem>& programs);
    void refuse(const QString& title, const QString& errorText);
    void start(const ProgramRef& program);

    QWidget* m_window;
    AddReading* m_reading;
    QPointer<Fenk::Dialog> m_readingDialog;
};
