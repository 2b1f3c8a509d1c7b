#pragma once

#include "shell/configuration/tables/TablePage.h"

/// The page of font replacements.
class FontReplacementPage : public TablePage {
    Q_OBJECT
public:
    explicit FontReplacementPage(QWidget* parent = nullptr);

private:
    void ask();
};
