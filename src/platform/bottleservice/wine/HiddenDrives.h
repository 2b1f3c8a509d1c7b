#pragma once

#include <QMap>
#include <QString>

/// Takes the drives of a prefix but C: away, which lead out of it, and puts them back. Wine looks them up at
/// every use and makes them only in a new prefix.
class HiddenDrives {
public:
    /// Takes away what there is now, also a second time.
    void hide(const QString& prefix);
    /// Returns an error text, empty on success.
    QString putBack();

private:
    QMap<QString, QString> m_targets;  ///< by the path of the link, as they were
};
