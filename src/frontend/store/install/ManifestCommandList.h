#pragma once

#include <QWidget>

#include "store/install/ManifestFacts.h"

class QPlainTextEdit;
class QPushButton;

/// The commands that the set-up of a manifest runs in the bottle: a line that unfolds to a list of them.
class ManifestCommandList : public QWidget {
    Q_OBJECT
public:
    explicit ManifestCommandList(const QVector<ManifestCommand>& commands, QWidget* parent = nullptr);

    /// One command as plain text, its description on a line of its own. Characters that would hide or
    /// reorder others are replaced.
    static QString text(const ManifestCommand& command);

Q_SIGNALS:
    /// The height that is wanted has changed.
    void unfolded(bool isUnfolded);

private:
    void unfold(bool isUnfolded);

    QPushButton* m_fold;
    QPlainTextEdit* m_list;
};
