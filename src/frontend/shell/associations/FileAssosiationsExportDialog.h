#pragma once

#include "fenk/window/Dialog.h"
#include "shell/associations/BottleAssociations.h"

class AssociationModel;
class FileAssosiationsListView;
class QStackedWidget;
struct BusResult;
struct ProgramRef;

namespace Fenk {
class Spinner;
}

/// Lets the user choose which of a bottle's associations are exported to the desktop. Shows a text instead of
/// the list if there are none or the service does not answer.
class FileAssosiationsExportDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    /// Asks the service for the bottle and fills the list later; does not wait.
    explicit FileAssosiationsExportDialog(const QString& bottle, QWidget* parent = nullptr);

    /// Opens a dialog that deletes itself.
    static void openFor(const ProgramRef& program, QWidget* over);

private:
    void onRecord(const BusResult& result);
    void fill(const QVector<BottleAssociations::Row>& rows);
    void showPlaceholder(const QString& text);
    void exportChosen();

    QString m_bottle;
    AssociationModel* m_model;
    FileAssosiationsListView* m_list;
    QStackedWidget* m_pages;
    int m_export = 0;  ///< index of the button
};
