#pragma once

#include <QWidget>

#include "shell/requests/AddRequest.h"

class AddGreenFileWidget;
class AddLocalFileWidget;
class AddOnlineFileWidget;
class AddPathTab;
class AddTab;
class QButtonGroup;
class QStackedWidget;

/// The three ways to add a program, a tab each. A file that belongs to another tab than the one that got it
/// moves there. GUI thread; waits for nothing.
class AddAppsHelperWidget : public QWidget {
    Q_OBJECT
public:
    enum Tab { LocalTab, OnlineTab, PortableTab };

    explicit AddAppsHelperWidget(QWidget* parent = nullptr);

    void onSelectLocalFileClicked();
    void onSelectOnlineFileClicked();
    void onSelectGreenFileClicked();

    /// Inputs of AddInputs, as if they had been dropped.
    void add(const QStringList& inputs);
    /// What has been checked elsewhere.
    void show(const AddRequest& request);
    /// Whether the shown tab has something to run.
    bool isReady() const;
    void focusTab();
    /// Empties the tabs. A download goes on.
    void clear();
    /// Only the tab that shows this file or folder.
    void forget(const QString& path);

public Q_SLOTS:
    /// Goes on with what the shown tab has.
    void onBtnRunClicked();

Q_SIGNALS:
    void readyChanged(bool ready);
    void chosen(const AddRequest& request);

private:
    void addTab(AddTab* tab, const char* name, const QString& title, void (AddAppsHelperWidget::*select)());
    void showTab(Tab tab);
    AddTab* shownTab() const;
    void showAddress(const QString& address);
    void moveFile(AddPathTab* from);
    void paintIcons();

    QButtonGroup* m_buttons;
    QStackedWidget* m_tabs;
    AddLocalFileWidget* m_local;
    AddOnlineFileWidget* m_online;
    AddGreenFileWidget* m_green;
};
