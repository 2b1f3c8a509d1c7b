#pragma once

#include <QJsonObject>
#include <QString>

/// What the scanner's document ({"detects": [{"values": [{"type", "name", "version", "string"}]}]}) means for
/// a launch. The first value that decides anything decides all, so that a self-extracting .NET program is an
/// installer when the archive is named first.
struct ExeDetection {
    bool installer = false;  ///< an archive or an installer
    bool vb6 = false;        ///< made with Visual Basic 6
    QString dotnetVersion;   ///< of the .NET that it was made for; empty for other programs

    /// The document in what the scanner has printed; other text may stand ahead of it. Empty when there is
    /// none.
    static QJsonObject document(QByteArray printed);

    static ExeDetection classify(const QJsonObject& detects);

    /// The component that brings the runtime; empty when none is needed.
    QString requiredComponent() const;
};
