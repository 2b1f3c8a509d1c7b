#pragma once

#include "backend/OwnThread.h"
#include "fenk/window/Dialog.h"
#include "shell/configuration/executables/ExecutableList.h"

class ListPlaceholder;
class QModelIndex;
class QStackedWidget;
class QStandardItemModel;
class QTreeView;

/// Lets the user pick one of the programs that lie in a bottle: those that are entered already are shown, but
/// can't be picked. Programs without a name get that of their version block when the list is shown already;
/// this stops with the dialog. Or lets the user pick several of programs that the caller has found. Does not
/// wait for the service.
class ChooseExecutableDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    ChooseExecutableDialog(const QString& title, const QString& bottle, QWidget* parent = nullptr);
    /// Offers these, in their order; the first is picked beforehand. The caller closes it with done(1) after
    /// programsChosen(), or shows why that failed.
    ChooseExecutableDialog(const QString& title, const QVector<Executable>& offered,
                           QWidget* parent = nullptr);

    /// For programsChosen(): the user can choose again.
    void showFailure(const QString& errorText);

public Q_SLOTS:
    void onOkBtnClicked();
    void onItemClicked(const QModelIndex& index);

Q_SIGNALS:
    /// The record with which the picked one can be entered.
    void programChosen(const QJsonObject& record);
    /// The records of several, in the order of the list.
    void programsChosen(const QVector<QJsonObject>& records);
    /// Of the offered ones the user wants none.
    void cancelled();
    /// The user wants to choose a file that is not in the list.
    void fileRequested();

private:
    void makeList(const QString& accessibleName);
    void load();
    void onPrograms(const QJsonArray& programs);
    void fill(const QVector<Executable>& executables);
    /// From this row on, one after the other.
    void readNames(int row);
    void setName(int row, const QString& name);
    const Executable* chosen() const;
    /// Rows, from the top.
    QVector<int> chosenRows() const;

    const QString m_bottle;
    QVector<Executable> m_executables;
    QStandardItemModel* m_model;
    QTreeView* m_list;
    ListPlaceholder* m_nothing = nullptr;
    ListPlaceholder* m_failed = nullptr;
    QStackedWidget* m_pages;
    bool m_takesSeveral = false;
    int m_add = 0;        ///< index of the button
    int m_readNames = 0;  ///< in version blocks
    OwnThread m_thread;
};
