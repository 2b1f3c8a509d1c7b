#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/// The headers of a PE file, as far as this service needs them: for which processor it is, where its sections
/// lie and whether it is whole. The only reader of PE headers; trusts no field of them. The format is that of
/// Microsoft's "PE Format" (PE32 and PE32+).
struct PeFile {
    static constexpr quint16 MachineI386 = 0x14c;
    static constexpr quint16 MachineAmd64 = 0x8664;
    static constexpr int CoffBytes = 24;  ///< of the COFF header with the signature before it
    static constexpr int SectionBytes = 40;

    enum class State {
        Other,    ///< no PE file, or none that can be read
        Whole,    ///< all that the headers name lies within the file
        CutShort  ///< the headers name more than the file holds
    };

    struct Section {
        QByteArray name;  ///< eight bytes, filled up with zeros
        quint32 memoryBytes;
        quint32 address;  ///< in memory, from the beginning of the image
        quint32 fileBytes;
        quint32 fileOffset;

        qint64 fileEnd() const { return qint64(fileOffset) + fileBytes; }
    };

    /// Reads the headers of a file. Follows links.
    static PeFile read(const QString& path);
    /// `head` holds at least the headers of a file with this size.
    static PeFile parse(const QByteArray& head, qint64 fileBytes);

    State state = State::Other;
    quint16 machine = 0;        ///< 0 where the file has no PE signature
    int coffHeader = 0;         ///< offset of the signature
    int sectionTable = 0;       ///< offset
    QVector<Section> sections;  ///< empty when the table could not be read
};
