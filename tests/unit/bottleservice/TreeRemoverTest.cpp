#include <sys/stat.h>
#include <unistd.h>

#include <QDirIterator>
#include <QRandomGenerator>
#include <QtTest>

#include "bottleservice/files/TreeRemover.h"
#include "support/TestHome.h"

using TestSupport::readFile;
using TestSupport::TestHome;

namespace {

constexpr int RandomTrees = 100;

/// Makes trees (no link leaves the test's own directory, lest a fault here costs more than a red test) of
/// directories, files, hard links and links in all directions; the same seed makes the same tree.
class TreeMaker {
public:
    TreeMaker(quint32 seed, const QString& outside, const QString& sibling)
        : m_random(seed), m_targets{outside, outside + "/keep", sibling, outside + "/..",       "..", ".",
                                    "../..", "nowhere",         "a",     outside + "/deep/down"} {}

    void fill(const QString& directory, int depth) {
        const int entries = m_random.bounded(1, 6);
        for (int i = 0; i < entries; ++i) {
            const QString path = directory + '/' + name(i);
            switch (m_random.bounded(depth > 3 ? 4 : 7)) {
                case 0:
                case 1:
                    QFile::link(m_targets[m_random.bounded(m_targets.size())], path);
                    break;
                case 2:
                    ::link(QFile::encodeName(m_targets[1]).constData(), QFile::encodeName(path).constData());
                    break;
                case 3:
                    writeFile(path);
                    break;
                default:
                    QDir().mkpath(path);
                    fill(path, depth + 1);
                    chmod(QFile::encodeName(path).constData(), m_random.bounded(4) == 0 ? 0 : 0755);
            }
        }
    }

private:
    QString name(int number) {
        static const QStringList stems{"a", ".hidden", "with \n line", "中文", "-rf", "*", "c:", ".moved-0"};
        return stems[m_random.bounded(stems.size())] + QString::number(number);
    }

    static void writeFile(const QString& path) {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write("inside");
    }

    QRandomGenerator m_random;
    QStringList m_targets;
};

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
    void randomTrees() {
        const TestHome home;
        for (const char* path : {"home/keep", "home/deep/down/file", "bottles/other/bottle.yml"})
            home.write(path, "precious");
        const QString bottles = home.path() + "/bottles/";
        const QStringList before = snapshot(home.path());
        for (int seed = 0; seed < RandomTrees; ++seed) {
            const QString tree = bottles + "tree";
            QDir().mkpath(tree);
            TreeMaker(quint32(seed), home.path() + "/home", bottles + "other").fill(tree, 0);
            QString error;
            QVERIFY2(TreeRemover::remove(tree, &error),
                     qPrintable(QString("seed %1: %2").arg(seed).arg(error)));
            QVERIFY(!QFileInfo::exists(tree));
            QCOMPARE(snapshot(home.path()), before);
        }
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
