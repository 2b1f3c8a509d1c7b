#pragma once

#include <QWidget>

#include "fenk/style/Theme.h"
#include "shell/adding/AddedFile.h"

class QLabel;

namespace Fenk {
class Label;
class Spinner;
}  // namespace Fenk

/// Shows the file that is to be added, and whether it can be. Checks it in the background; a later check
/// replaces one that is running. Hidden while there is none. GUI thread.
class FileStateRow : public QWidget {
    Q_OBJECT
public:
    explicit FileStateRow(QWidget* parent = nullptr);

    void check(const QString& path);
    /// What another row has checked.
    void show(const AddedFile& file);
    void refuse(const QString& reason);
    void clear();

    const AddedFile& file() const { return m_file; }
    bool isGood() const { return m_file.kind != AddedFile::Refused; }

Q_SIGNALS:
    /// Another file, or another state of it.
    void changed();

private:
    void showState(const QString& text, Fenk::Theme::Role role, const QIcon& icon);

    AddedFile m_file;
    int m_checks = 0;  ///< begun; only the last one counts
    Fenk::Label* m_name;
    Fenk::Spinner* m_spinner;
    QLabel* m_icon;
    Fenk::Label* m_state;
    Fenk::Label* m_reason;
};
