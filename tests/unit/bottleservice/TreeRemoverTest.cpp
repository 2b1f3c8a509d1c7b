#include <sys/stat.h>
#include <unistd.h>

#include <QDirIterator>
#include <QtTest>

#include "bottleservice/files/TreeRemover.h"
#include "support/TestHome.h"

using TestSupport::readFile;
using TestSupport::TestHome;

namespace {

/// Every entry below a directory with its kind, permissions and content.
QStringList snapshot(const QString& directory) {
    QStringList lines;
    QDirIterator it(directory, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        lines += info.filePath() + ' ' + QString::number(info.permissions()) + ' ' + info.symLinkTarget() +
                 ' ' + readFile(info.filePath());
    }
    lines.sort();
    return lines;
}

}  // namespace

class TreeRemoverTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    /// Links in all directions, names that a shell would trip over, and a directory that may not be read.
    void leavesEverythingElse() {
        const TestHome home;
        const QString outside = QFileInfo(home.write("home/keep", "precious")).path();
        for (const char* path : {"home/deep/down/file", "bottles/other/bottle.yml"})
            home.write(path, "precious");
        const QStringList before = snapshot(home.path());
        const QString tree = home.path() + "/bottles/tree";
        for (const QString& directory : {QString("/closed"), QString("/c:/中文/.hidden")}) {
            const QString place = tree + directory + '/';
            QVERIFY(QDir().mkpath(place));
            for (const char* name : {"with \n line", "-rf", "*", ".moved-0"})
                home.write(QDir(home.path()).relativeFilePath(place) + '/' + name, "inside");
            int number = 0;
            for (const QString& target : {outside, outside + "/keep", outside + "/..", outside + "/deep/down",
                                          home.path() + "/bottles/other", QString(".."), QString("."),
                                          QString("../.."), QString("nowhere"), QString("-rf")})
                QVERIFY(QFile::link(target, place + "link" + QString::number(number++)));
            QCOMPARE(::link(qPrintable(outside + "/keep"), qPrintable(place + "hard")), 0);
        }
        QCOMPARE(::chmod(qPrintable(tree + "/closed"), 0), 0);
        QString error;
        QVERIFY2(TreeRemover::remove(tree, &error), qPrintable(error));
        QVERIFY(!QFileInfo::exists(tree));
        QCOMPARE(snapshot(home.path()), before);
    }

    void deeperThanPathsMayBe() {
        const TestHome home;
        const QString tree = home.path() + "/tree";
        const QString workingDirectory = QDir::currentPath();
        QVERIFY(QDir().mkdir(tree) && QDir::setCurrent(tree));
        for (int i = 0; i < 500; ++i)
            QVERIFY(mkdir("directory", 0755) == 0 && chdir("directory") == 0);
        QDir::setCurrent(workingDirectory);
        QString error;
        QVERIFY2(TreeRemover::remove(tree, &error), qPrintable(error));
        QVERIFY(!QFileInfo::exists(tree));
    }

    void linkIsRefused() {
        const TestHome home;
        const QString file = home.write("real/file", "x");
        const QString link = home.path() + "/link";
        QVERIFY(QFile::link(home.path() + "/real", link));
        QString error;
        QVERIFY(!TreeRemover::remove(link, &error));
        QVERIFY(!error.isEmpty());
        QVERIFY(QFileInfo::exists(file) && QFileInfo(link).isSymLink());
        QVERIFY(TreeRemover::remove(home.path() + "/missing", &error));
    }
};

QTEST_GUILESS_MAIN(TreeRemoverTest)
#include "TreeRemoverTest.moc"
