#pragma once

#include "backend/ServiceCalls.h"
#include "shell/configuration/tables/TablePage.h"

class DllOverrideListView;
class QPushButton;

/// The page of DLL overrides: the list, and scans of the bottle's programs that fill it. A scan shows first
/// what it would change, and can be cancelled.
class DllOverridePage : public TablePage {
    Q_OBJECT
public:
    explicit DllOverridePage(QWidget* parent = nullptr);

private:
    using Scan = std::function<void(const ServiceCalls::Handler&)>;

    void addScans();
    /// What is found gets the load method.
    void scan(const QString& title, const Scan& call, int method);
    QWidget* makeScanning();
    void setScanning(bool scanning);
    void onFound(const QString& title, const BusResult& result, int method);

    DllOverrideListView* m_list;
    QPushButton* m_scan;
    QWidget* m_scanning;  ///< instead of the button while a scan is under way
    int m_scans = 0;      ///< an answer to an earlier one is dropped
};
