#pragma once

#include <QStringList>

class QComboBox;

/// Lets the user type into a combo box or choose one of the entries; completes anywhere in a name and in any
/// case. Both lists show this many entries at once. What is typed stays as it is when entries differ from it
/// in case only; such entries must be in lower case.
void makeCompleting(QComboBox* combo, const QStringList& entries, int visibleItems = 15,
                    bool keepsCase = false);
