#include <sys/stat.h>
#include <unistd.h>

#include <QDirIterator>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include "bottleservice/bottles/TreeRemover.h"

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
        QString line =
            info.filePath() + ' ' + QString::number(info.permissions()) + ' ' + info.symLinkTarget();
        QFile file(info.filePath());
        if (info.isFile() && file.open(QIODevice::ReadOnly))
            line += ' ' + QString::fromUtf8(file.readAll());
        lines += line;
    }
    lines.sort();
    return lines;
}

}  // namespace

class tst_TreeRemover : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void randomTrees();
    void deeperThanPathsMayBe();
    void linkIsRefused();
};

void tst_TreeRemover::randomTrees() {
    QTemporaryDir directory;
    const QString outside = directory.filePath("home");
    const QString sibling = directory.filePath("bottles/other");
    QDir().mkpath(outside + "/deep/down");
    QDir().mkpath(sibling);
    for (const QString& path : {outside + "/keep", outside + "/deep/down/file", sibling + "/bottle.yml"}) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("precious");
    }
    const QStringList before = snapshot(directory.path());
    for (int seed = 0; seed < RandomTrees; ++seed) {
        const QString tree = directory.filePath("bottles/tree");
        QDir().mkpath(tree);
        TreeMaker(quint32(seed), outside, sibling).fill(tree, 0);
        QString error;
        QVERIFY2(TreeRemover::remove(tree, &error), qPrintable(QString("seed %1: %2").arg(seed).arg(error)));
        QVERIFY(!QFileInfo::exists(tree));
        QCOMPARE(snapshot(directory.path()), before);
    }
}

void tst_TreeRemover::deeperThanPathsMayBe() {
    QTemporaryDir directory;
    const QString tree = directory.filePath("tree");
    QVERIFY(QDir().mkdir(tree));
    const QString workingDirectory = QDir::currentPath();
    QVERIFY(QDir::setCurrent(tree));
    for (int i = 0; i < 500; ++i) {
        QCOMPARE(mkdir("directory", 0755), 0);
        QCOMPARE(chdir("directory"), 0);
    }
    QDir::setCurrent(workingDirectory);
    QString error;
    QVERIFY2(TreeRemover::remove(tree, &error), qPrintable(error));
    QVERIFY(!QFileInfo::exists(tree));
}

void tst_TreeRemover::linkIsRefused() {
    QTemporaryDir directory;
    QDir().mkpath(directory.filePath("real/sub"));
    QFile::link(directory.filePath("real"), directory.filePath("link"));
    QString error;
    QVERIFY(!TreeRemover::remove(directory.filePath("link"), &error));
    QVERIFY(!error.isEmpty());
    QVERIFY(QFileInfo::exists(directory.filePath("real/sub")));
    QVERIFY(QFileInfo(directory.filePath("link")).isSymLink());
    QVERIFY(TreeRemover::remove(directory.filePath("missing"), &error));
}

QTEST_GUILESS_MAIN(tst_TreeRemover)
#include "tst_treeremover.moc"
