#include "launch/bottle/PrivateBottleName.h"

#include <QCryptographicHash>

#include "support/Table.h"
#include "support/TestHome.h"

using TestSupport::Table;

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

    TestSupport::TestHome m_home;

private Q_SLOTS:
    /// Builds the block that is hashed as one buffer: the last MiB, the first ten, zeros.
    void key() {
        for (const int size : {0, 1, MiB - 1, MiB, MiB + 1, 10 * MiB, 11 * MiB, 12 * MiB}) {
            const QByteArray bytes = content(size);
            QByteArray block = (size >= MiB ? bytes.right(MiB) : QByteArray()) + bytes.left(10 * MiB);
            block += QByteArray(0xb00000 - block.size(), '\0');
            const QByteArray md5 = QCryptographicHash::hash(block, QCryptographicHash::Md5).toHex();
            const QString key = partialFileMd5(m_home.write("file.bin", bytes));
            QVERIFY2(key == QString(md5), qPrintable(QString::number(size)));
        }
        QCOMPARE(partialFileMd5(m_home.path() + "/none"), QString());
    }

    void name_data() {
        const Table<QString, QString> row("fileName", "expected");
        const QString fifty(50, 'a');
        row("50 characters", fifty, fifty + "KEY");
        row("51 characters", fifty + "b", fifty + "-KEY");
        row("unwanted", "a $[b](c)\n\t*?.exe", "abc.exeKEY");
        row("cut comes before removal", QString(50, ' ') + "tail.exe", "-KEY");
        row("Chinese", "微信安装（1）.exe", "微信安装（1）.exeKEY");
        row("no half characters", QString(49, 'a') + "😀.exe", QString(49, 'a') + "-KEY");
    }
    void name() {
        QFETCH(QString, fileName);
        QTEST(privateBottleName(fileName, "KEY"), "expected");
    }
};

QTEST_GUILESS_MAIN(PrivateBottleNameTest)
#include "PrivateBottleNameTest.moc"
