#include "launch/PrivateBottleName.h"

#include <QCryptographicHash>
#include <QTemporaryDir>
#include <QtTest>

namespace {
constexpr int MiB = 1024 * 1024;

QByteArray content(int size) {
    QByteArray bytes(size, Qt::Uninitialized);
    for (int i = 0; i < size; ++i)
        bytes[i] = char((i * 31 + i / 4099) & 0xff);
    return bytes;
}
}  // namespace

class PrivateBottleNameTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_dir;

    QString write(const QByteArray& bytes) {
        const QString path = m_dir.filePath("file.bin");
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
        return path;
    }

private Q_SLOTS:
    void key_data() {
        QTest::addColumn<int>("size");
        for (int size : {0, 1, MiB - 1, MiB, MiB + 1, 10 * MiB, 11 * MiB, 12 * MiB})
            QTest::addRow("%d bytes", size) << size;
    }

    /// The block is laid out here as one buffer, as the format tells it.
    void key() {
        QFETCH(int, size);
        const QByteArray bytes = content(size);
        QByteArray block(0xb00000, '\0');
        int at = 0;
        if (size >= MiB) {
            block.replace(0, MiB, bytes.right(MiB));
            at = MiB;
        }
        const QByteArray head = bytes.left(10 * MiB);
        block.replace(at, head.size(), head);
        QCOMPARE(block.size(), 0xb00000);
        QCOMPARE(partialFileMd5(write(bytes)),
                 QString(QCryptographicHash::hash(block, QCryptographicHash::Md5).toHex()));
    }

    void middleDoesNotCount() {
        QByteArray bytes = content(12 * MiB);
        const QString before = partialFileMd5(write(bytes));
        bytes[10 * MiB + MiB / 2] = char(~bytes.at(10 * MiB + MiB / 2));
        QCOMPARE(partialFileMd5(write(bytes)), before);
        bytes[0] = char(~bytes.at(0));
        QVERIFY(partialFileMd5(write(bytes)) != before);
    }

    void unreadableFileHasNoKey() { QCOMPARE(partialFileMd5(m_dir.filePath("none")), QString()); }

    void name_data() {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("expected");
        const QString fifty(50, 'a');
        QTest::newRow("plain") << "setup.exe"
                               << "setup.exeKEY";
        QTest::newRow("50 characters") << fifty << fifty + "KEY";
        QTest::newRow("51 characters") << fifty + "b" << fifty + "-KEY";
        QTest::newRow("unwanted") << "a $[b](c)\n\t*?.exe"
                                  << "abc.exeKEY";
        QTest::newRow("cut comes before removal") << QString(50, ' ') + "tail.exe"
                                                  << "-KEY";
        QTest::newRow("Chinese") << "微信安装（1）.exe"
                                 << "微信安装（1）.exeKEY";
        QTest::newRow("no half characters") << QString(49, 'a') + "😀.exe" << QString(49, 'a') + "-KEY";
    }

    void name() {
        QFETCH(QString, fileName);
        QFETCH(QString, expected);
        QCOMPARE(privateBottleName(fileName, "KEY"), expected);
    }
};

QTEST_GUILESS_MAIN(PrivateBottleNameTest)
#include "PrivateBottleNameTest.moc"
