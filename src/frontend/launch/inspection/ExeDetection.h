#pragma once

#include <QJsonObject>
#include <QString>

/// What the output of diec ({"detects": [{"values": [{"type", "name", "version", "string"}]}]}) means for a
/// launch. The first decisive value wins: a self-extracting .NET program is an installer if the archive is
/// listed first.
struct ExeDetection {
    bool installer = false;  ///< an archive or an installer
    bool vb6 = false;        ///< built with Visual Basic 6
    QString dotnetVersion;   ///< the .NET version that it was built for; empty for other programs

    /// Extracts the JSON document from the output of diec, which may start with other text. Empty if there is
    /// none.
    static QJsonObject document(QByteArray printed);

    static ExeDetection classify(const QJsonObject& detects);

    /// The component that contains the required runtime; empty when none is needed.
    QString requiredComponent() const;
};
