#include "shell/configuration/fonts/FontReplacementPage.h"

#include "shell/configuration/fonts/FontReplaceDialog.h"
#include "shell/configuration/fonts/FontReplacementListView.h"

FontReplacementPage::FontReplacementPage(QWidget* parent)
    : TablePage("fontreplacement", "cxb_empty_fontlist",
                {tr("If windows fonts don't exist, use system fonts instead."), tr("Replace a font"),
                 tr("There are no fonts replaced")},
                new FontReplacementListView, parent) {
    connect(this, &TablePage::addRequested, this, &FontReplacementPage::ask);
}

void FontReplacementPage::ask() {
    auto* dialog = new FontReplaceDialog(this);
    auto* list = static_cast<FontReplacementListView*>(table());
    connect(dialog, &QDialog::accepted, list,
            [list, dialog] { list->addNewReplacements(dialog->windowsFont(), dialog->replacement(), true); });
    dialog->open();
}
