#pragma once

#include <QStringList>

/// The names of fonts that the user chooses from.
namespace FontNames {

/// What Windows and its language packs have; the first are those that Chinese programs ask for most.
QStringList ofWindows();
/// The families of this machine.
QStringList ofSystem();
/// Without the foundry in brackets by which Qt tells two families of one name apart; Wine knows the name.
QString withoutFoundry(const QString& family);

/// Fonts of Windows that nearly every program uses, and the one family that stands in for all of them.
QStringList replacedByDefault();
QString defaultReplacement();

}  // namespace FontNames
