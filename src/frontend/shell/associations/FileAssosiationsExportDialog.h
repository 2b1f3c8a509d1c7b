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

/// Which of the files and links that a bottle's programs open the desktop shall open with them.
class FileAssosiationsExportDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    /// Comes up at once and fills itself.
    explicit FileAssosiationsExportDialog(const QString& bottle, QWidget* parent = nullptr);

    static void openFor(const ProgramRef& program, QWidget* over);

private:
    void onRecord(const BusResult& result);
    void fill(const QVector<BottleAssociations::Row>& rows);
    void showInstead(const QString& sentence);
    void exportChosen();

    QString m_bottle;
    AssociationModel* m_model;
    FileAssosiationsListView* m_list;
    QStackedWidget* m_pages;
    int m_export = 0;  ///< index of the button
};
