#include <QtEndian>

#include "launch/inspection/OpenRefusal.h"
#include "launch/inspection/ProgramKind.h"
#include "support/Table.h"
#include "support/TestHome.h"

using K = ProgramKind;
using TestSupport::Table;

Q_DECLARE_METATYPE(ProgramKind)
Q_DECLARE_METATYPE(ProgramHost)

namespace {

template <class Number>
void put(QByteArray& bytes, int at, Number value) {
    qToLittleEndian(value, bytes.data() + at);
}

/// A DOS header that points to a newer one at 64.
QByteArray stub(const QByteArray& newHeader) {
    QByteArray bytes("MZ" + QByteArray(62, '\0'));
    put<quint16>(bytes, 24, 64);
    put<quint32>(bytes, 60, 64);
    return bytes + newHeader;
}

struct Section {
    quint32 virtualSize, rawSize, rawStart, flags = 0x20;
};

QByteArray pe(quint16 machine, quint16 subsystem = 2, quint16 characteristics = 0x22,
              const QVector<Section>& sections = {}, int fileSize = 4096) {
    QByteArray header(24 + 240 + sections.size() * 40, '\0');
    header.replace(0, 2, "PE");
    put<quint16>(header, 4, machine);
    put<quint16>(header, 6, quint16(sections.size()));
    put<quint16>(header, 20, 240);
    put<quint16>(header, 22, characteristics);
    put<quint16>(header, 24, 0x20b);
    put<quint16>(header, 24 + 68, subsystem);
    for (int i = 0; i < sections.size(); ++i) {
        const int at = 24 + 240 + i * 40;
        put(header, at + 8, sections[i].virtualSize);
        put(header, at + 16, sections[i].rawSize);
        put(header, at + 20, sections[i].rawStart);
        put(header, at + 36, sections[i].flags);
    }
    return stub(header).leftJustified(fileSize, '\0', true);
}

QByteArray compound(quint32 classId) {
    QByteArray bytes(1024, '\0');
    bytes.replace(0, 8, "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1");
    put<quint16>(bytes, 30, 9);
    put<quint32>(bytes, 48, 0);  // the directory begins behind the header
    put(bytes, 512 + 80, classId);
    put<quint64>(bytes, 512 + 88, 0x46000000000000c0);
    return bytes;
}

}  // namespace

/// Which files are launched, and why the others are refused.
class ProgramKindTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;

private Q_SLOTS:
    void kind_data() {
        const Table<QString, QByteArray, ProgramKind, ProgramHost> row("suffix", "content", "kind", "host");
        const ProgramHost plain, old{true, true, false}, dosBox{true, true, true}, arm{false, false, false};
        row("64 bit", "exe", pe(0x8664), K::Runnable, plain);
        row("32 bit under another name", "scr", pe(0x14c), K::Runnable, plain);
        row("odd subsystem and machine", "exe", pe(0, 0, 0), K::Runnable, plain);
        row("ARM64", "exe", pe(0xaa64), K::ArmProgram, plain);
        row("ARM64 on ARM64", "exe", pe(0xaa64), K::Runnable, arm);
        row("Itanium", "exe", pe(0x200), K::OtherProcessor, plain);
        row("library", "dll", pe(0x8664, 2, 0x2022), K::Library, plain);
        row("driver", "sys", pe(0x8664, 1), K::Driver, plain);
        row("EFI, also for ARM64", "efi", pe(0xaa64, 10), K::EfiProgram, plain);
        row("with what is appended", "exe", pe(0x14c, 2, 0x22, {{900, 512, 1024}}, 9000), K::Runnable, plain);
        row("last section padded", "exe", pe(0x14c, 2, 0x22, {{900, 4096, 1024}}, 1600), K::Runnable, plain);
        row("packed, raw size too large", "exe", pe(0x14c, 2, 0x22, {{4096, 0x7fffffff, 1024}}, 5120),
            K::Runnable, plain);
        row("section without data", "exe", pe(0x14c, 2, 0x22, {{90000, 90000, 1024, 0x80}}), K::Runnable,
            plain);
        row("half of it", "exe", pe(0x14c, 2, 0x22, {{90000, 90000, 1024}}, 40000), K::Incomplete, plain);
        row("cut in the headers", "exe", pe(0x14c, 2, 0x22, {}, 200), K::Incomplete, plain);
        row("cut in the stub", "exe", stub("").left(50), K::Incomplete, plain);
        row("too many sections", "exe", pe(0x14c, 2, 0x22, QVector<Section>(400), 8000), K::Incomplete,
            plain);
        row("DOS", "exe", "MZ" + QByteArray(200, '\x7f'), K::DosProgram, plain);
        row("DOS with DOSBox", "exe", "MZ" + QByteArray(200, '\x7f'), K::Runnable, dosBox);
        row("newer header out of reach", "exe", "MZ" + QByteArray(62, '\xff'), K::DosProgram, plain);
        row("16 bit", "exe", stub("NE" + QByteArray(100, '\0')), K::Windows16, plain);
        row("16 bit with 32-bit Wine", "exe", stub("NE" + QByteArray(100, '\0')), K::Runnable, old);
        row("OS/2", "exe", stub("LX" + QByteArray(100, '\0')), K::Os2Program, dosBox);
        row("DOS without a header", "com", "\xb4\x4c", K::DosProgram, plain);
        row("DOS extender", "exe", stub("LE" + QByteArray(100, '\0')), K::DosProgram, plain);
        row("package", "msi", compound(0xc1084), K::Runnable, plain);
        row("package under another name", "bin", compound(0xc1084), K::MisnamedPackage, plain);
        row("document", "doc", compound(0x20906), K::NoProgram, plain);
        row("page for a package", "msi", " <!DOCTYPE HTML>", K::WebPage, plain);
        row("page", "html", "<html>", K::NoProgram, plain);
        row("archive", "exe", "PK\x03\x04", K::ArchiveFile, plain);
        row("Linux", "exe",
            "\x7f"
            "ELF\x02",
            K::UnixProgram, plain);
        row("text", "exe", "MZ?", K::Incomplete, plain);
        row("batch file", "BAT", "@echo off", K::Runnable, plain);
    }
    void kind() {
        QFETCH(QString, suffix);
        QFETCH(QByteArray, content);
        QFETCH(ProgramHost, host);
        const QString path = m_home.write("program", content);
        QTEST(programKind(ProgramHeader::read(path), suffix, host), "kind");
        // A file that is cut anywhere is not read beyond its end.
        for (int size = 0; size < qMin(content.size(), 600); size += 41) {
            m_home.write("cut", content.left(size));
            programKind(ProgramHeader::read(m_home.path() + "/cut"), suffix, host);
        }
    }

    void refusal_data() {
        const Table<QString, QString> row("name", "reason");
        row("program", "good.exe", "");
        row("sign in a folder that Windows knows", "\xc2\x85/good.exe", "");
        row("missing", "none.exe", "There is no such file.");
        row("link to nowhere", "broken.exe", "It is a link to a file that is not there.");
        row("folder", "folder.exe", "It is a folder.");
        row("device", "/dev/null", "It is a device or a pipe, not a file.");
        row("empty", "empty.exe", "The file is empty.");
        row("line break", "a\nb.exe",
            "Its name or path contains a line break or another control character, which Windows does not "
            "allow.");
        row("sign that a launch refuses", "a:b.exe", "");
        row("library", "part.dll",
            "It is a library (DLL): a part of a program, which cannot be started by "
            "itself.");
    }
    void refusal() {
        QFETCH(QString, name);
        for (const char* good : {"good.exe", "a\nb.exe", "a:b.exe"})
            m_home.write(good, pe(0x8664));
        m_home.write("part.dll", pe(0x8664, 2, 0x2022));
        m_home.write("empty.exe", "");
        QDir(m_home.path()).mkdir("folder.exe");
        m_home.write("\xc2\x85/good.exe", pe(0x8664));
        QFile::link("/nowhere/x.exe", m_home.path() + "/broken.exe");
        const QString path = name.startsWith('/') ? name : m_home.path() + '/' + name;
        QTEST(OpenRefusal::of(path).reason, "reason");
        QVERIFY(!OpenRefusal::ofOther(path).advice.isEmpty());
    }

    /// A file where the directory should be stops root, too.
    void dataCannotBeWritten() {
        const QString file = m_home.write("good.exe", pe(0x8664));
        m_home.write("in the way", "");
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_home.path() + "/in the way"));
        QVERIFY(OpenRefusal::of(file).reason.contains("/in the way"));
    }
};

QTEST_GUILESS_MAIN(ProgramKindTest)
#include "ProgramKindTest.moc"
