#pragma once

#include <QWidget>

#include "shell/requests/AddRequest.h"

class FileStateRow;

/// One of the ways to add a program.
class AddTab : public QWidget {
    Q_OBJECT
public:
    explicit AddTab(QWidget* parent = nullptr);

    /// What is to be added; Nothing while there is none or it is being checked.
    const AddRequest& request() const;
    virtual void clear();

Q_SIGNALS:
    void changed();
    /// The user has dropped or chosen these inputs of AddInputs.
    void added(const QStringList& inputs);

protected:
    FileStateRow* state() const { return m_state; }

private:
    FileStateRow* m_state;
};
