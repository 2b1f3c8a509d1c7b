#include "shell/adding/AddTab.h"

#include "shell/adding/FileStateRow.h"

AddTab::AddTab(QWidget* parent) : QWidget(parent), m_state(new FileStateRow) {
    connect(m_state, &FileStateRow::changed, this, &AddTab::changed);
}

const AddRequest& AddTab::request() const {
    return m_state->request();
}

void AddTab::clear() {
    m_state->clear();
}
