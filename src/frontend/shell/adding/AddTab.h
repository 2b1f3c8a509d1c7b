#pragma once

#include <QWidget>

#include "shell/adding/AddedFile.h"

class FileStateRow;

/// One of the ways to add a program.
class AddTab : public QWidget {
    Q_OBJECT
public:
    explicit AddTab(QWidget* parent = nullptr);

    /// The file that is to be added; refused while there is none.
    const AddedFile& file() const;
    virtual void clear();

Q_SIGNALS:
    void changed();
    /// The user has dropped this.
    void dropped(const QList<QUrl>& urls);

protected:
    FileStateRow* state() const { return m_state; }

private:
    FileStateRow* m_state;
};
