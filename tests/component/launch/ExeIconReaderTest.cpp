#include "launch/inspection/ExeIconReader.h"

#include <QBuffer>
#include <QtEndian>

#include "launch/icons/IconFile.h"
#include "support/Table.h"
#include "support/TestHome.h"

class ExeIconReaderTest : public QObject {
    Q_OBJECT

    TestSupport::TestHome m_home;

    static QByteArray png(int pixels) {
        QImage image(pixels, pixels, QImage::Format_ARGB32);
        image.fill(qRgba(1, 2, 3, 128));
        QBuffer buffer;
        image.save(&buffer, "png");
        return buffer.data();
    }
    /// An icon file of images: a head with width and bits (see head()), and the image data.
    static QByteArray ico(const QList<QPair<QByteArray, QByteArray>>& images) {
        QByteArray head("\0\0\1\0\0\0", 6), data;
        head[4] = char(images.size());
        for (const auto& image : images) {
            QByteArray entry = image.first + QByteArray(8, 0);
            qToLittleEndian<quint32>(quint32(image.second.size()), entry.data() + 8);
            qToLittleEndian<quint32>(quint32(6 + 16 * images.size() + data.size()), entry.data() + 12);
            head += entry;
            data += image.second;
        }
        return head + data;
    }
    static QByteArray head(int pixels, int bits) {
        return QByteArray(2, char(pixels)) + QByteArray("\0\0\1\0", 4) + char(bits) + '\0';
    }
    static QList<int> widths(const QIcon& icon) {
        QList<int> found;
        for (const QSize& size : icon.availableSizes())
            found << size.width();
        return found;
    }

private Q_SLOTS:
    void files_data() {
        const TestSupport::Table<QByteArray, QList<int>> row("file", "expected");
        QByteArray dib("\x28\0\0\0\2\0\0\0\4\0\0\0\1\0\x20\0", 16);
        dib += QByteArray(24, 0);
        const QByteArray huge = png(64).replace(16, 8, QByteArray("\0\0\x9c\x40\0\0\x9c\x40", 8));
        row("all sizes",
            ico({{head(0, 32), png(256)},
                 {head(16, 32), png(16)},
                 {head(2, 32), dib + QByteArray(24, '\x7f')}}),
            {2, 16, 256});
        row("best of a size", ico({{head(16, 4), png(16)}, {head(16, 32), png(17)}, {head(16, 8), png(18)}}),
            {17});
        row("nobody sees it", ico({{head(2, 32), dib + QByteArray(24, 0)}}), {});
        row("larger than it says",
            ico({{head(16, 32), png(600)}, {head(32, 32), huge}, {head(48, 32), png(48)}}), {48});
        row("torn", ico({{head(16, 32), png(16)}, {head(32, 32), png(32)}}).chopped(40), {16});
        row("head alone", QByteArray("\0\0\1\0\xff\xff", 6), {});
        row("picture", png(40), {40});
        row("large picture", png(600), {512});
        const auto drawing = [](const QByteArray& text) {
            return "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>" + text +
                   "<rect width='9' height='9'/></svg>";
        };
        row("drawing", drawing("<g id='a'/><use href='#a'/>"), {512});
        row("drawing of itself", drawing("<g id='a'><use href='#b'/></g><g id='b'><use href='#a'/></g>"), {});
        row("drawing with a file", drawing("<image href='/dev/zero' width='9' height='9'/>"), {});
        row("endless dashes", drawing("<path d='M0 0L9 9' style='stroke-dasharray:1e-9'/>"), {});
        row("deep drawing", drawing(QByteArray("<g>").repeated(9999) + QByteArray("</g>").repeated(9999)),
            {});
        row("entities", "<!DOCTYPE svg [<!ENTITY a 'a'>]>" + drawing("&a;"), {});
        row("other text", "<html/>", {});
        row("empty", "", {});
    }
    void files() {
        QFETCH(QByteArray, file);
        QTEST(widths(IconFile::read(m_home.write("a", file))), "expected");
    }

    void programs() {
        QFile sample(QString(TEST_BINARY_DIR) + "/tests/programs/x64/window.exe");
        if (!sample.open(QIODevice::ReadOnly))
            QSKIP("the Windows compiler is not on this machine");
        const QByteArray bytes = sample.readAll();
        ExeIconReader package(m_home.write("a.msi", "\xd0\xcf\x11\xe0")), none(m_home.write("a.exe", "MZ"));
        // Three files of the same name at the same time.
        ExeIconReader first(m_home.write("b/ö 'x'.exe", bytes)), second(m_home.write("c/ö 'x'.exe", "MZ")),
            third(m_home.write("d/ö 'x'.exe", bytes));
        QSignalSpy ready(&first, &ExeIconReader::ready), other(&third, &ExeIconReader::ready);
        for (ExeIconReader* reader : {&package, &none, &first, &second, &third}) {
            connect(reader, &ExeIconReader::ready, this, [reader, &first, &third](const QIcon& icon) {
                QVERIFY(reader == &first || reader == &third);
                QCOMPARE(widths(icon), (QList<int>{16, 32, 48}));
            });
            reader->start();
        }
        QTRY_VERIFY_WITH_TIMEOUT(ready.count() == 1 && other.count() == 1, 30000);
        auto ended = std::make_unique<ExeIconReader>(sample.fileName());
        ended->start();
    }
};

QTEST_MAIN(ExeIconReaderTest)
#include "ExeIconReaderTest.moc"
