#pragma once

#include <QStringList>

class QComboBox;

/// Lets the user type into a combo box or choose one of the entries; completes in any case and anywhere in a
/// name. Both lists show this many entries at once.
void makeCompleting(QComboBox* combo, const QStringList& entries, int visibleItems = 15);
