#pragma once

#include "fenk/window/AbstractDialog.h"

namespace Fenk {

/// What the program is: icon, name, version, what it is for, and a link if there is one. Filled from the
/// Application.
class AboutDialog : public AbstractDialog {
    Q_OBJECT
public:
    struct Facts {
        QIcon icon;
        QString name;
        QString version;
        QString description;
        QString linkHtml;  ///< the program's own markup, never anything from outside
    };

    explicit AboutDialog(const Facts& facts, QWidget* parent = nullptr);
};

}  // namespace Fenk
