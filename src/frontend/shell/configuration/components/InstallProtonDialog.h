#pragma once

#include <QVector>

#include "fenk/window/AbstractDialog.h"

class ProtonItemRow;

namespace Fenk {
class Label;
}

/// The versions of Proton, whether each is on the machine, and the way to its page in the desktop's app
/// store. Follows the list of installed runners. Make it when the service has answered once, since the first
/// use of that list waits for it.
class InstallProtonDialog : public Fenk::AbstractDialog {
    Q_OBJECT
public:
    explicit InstallProtonDialog(QWidget* parent = nullptr);

    /// Shows one over the window; it deletes itself.
    static void openOver(QWidget* window);

private:
    QWidget* makeHead();
    void refresh();
    void openStore(const QString& name);

    QVector<ProtonItemRow*> m_rows;
    Fenk::Label* m_problem;
};
