#pragma once

#include <QByteArray>
#include <QString>

namespace StoreServer {

/// How wide a text is on a terminal.
int columnsOf(const QString& text);

/// Text from outside on one line of a terminal: what controls it, or changes the direction of writing,
/// becomes a question mark. At most `columns` wide, and of few characters for these, with an ellipsis for the
/// rest.
QString terminalText(const QString& text, int columns);

/// JSON with escapes for the same characters, so that it can be printed. Compact JSON has them only in texts.
QByteArray plainJson(const QByteArray& json);

}  // namespace StoreServer
