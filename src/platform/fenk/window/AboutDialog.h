#pragma once

#include "fenk/window/AbstractDialog.h"

namespace Fenk {

/// The About box: icon, name, version, description, and an optional link. Filled by Application.
class AboutDialog : public AbstractDialog {
    Q_OBJECT
public:
    struct Facts {
        QIcon icon;
        QString name;
        QString version;
        QString description;
        QString linkHtml;  ///< markup of our own, never untrusted text
    };

    explicit AboutDialog(const Facts& facts, QWidget* parent = nullptr);
};

}  // namespace Fenk
