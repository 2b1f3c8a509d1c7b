#pragma once

#include "backend/ServiceCalls.h"
#include "shell/configuration/tables/TablePage.h"

class DllOverrideListView;
class QPushButton;

/// The page of DLL overrides: the list, and scans of the bottle's programs that fill it. A scan shows first
/// what it would change.
class DllOverridePage : public TablePage {
    Q_OBJECT
public:
    explicit DllOverridePage(QWidget* parent = nullptr);

private:
    using Scan = std::function<void(const ServiceCalls::Handler&)>;

    void addScans();
    /// What is found gets the load method.
    void scan(const QString& title, const Scan& call, int method);
    void onFound(const QString& title, const BusResult& result, int method);

    DllOverrideListView* m_list;
    QPushButton* m_scan;
};
