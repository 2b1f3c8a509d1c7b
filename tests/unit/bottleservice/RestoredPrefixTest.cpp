#include "bottleservice/backup/RestoredPrefix.h"

#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

#include "support/Table.h"
#include "support/TestHome.h"

/// Whatever a list that is accepted says, the completion writes inside of the bottle only, and every file
/// that was unpacked stays.
class RestoredPrefixTest : public QObject {
    Q_OBJECT

    static QMap<QString, QByteArray> treeOf(const QString& root) {
        QMap<QString, QByteArray> tree;
        QDirIterator walk(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            const QFileInfo info(walk.next());
            tree[info.filePath().mid(root.size() + 1)] = info.isSymLink() ? info.symLinkTarget().toUtf8()
                                                         : info.isDir()
                                                             ? QByteArray("directory")
                                                             : TestSupport::readFile(info.filePath());
        }
        return tree;
    }

private Q_SLOTS:
    void anyList() {
        QRandomGenerator random(1);
        const QStringList places{
            "drive_c/windows",   "drive_c/windows/system32",  "drive_c/users", "drive_c/users/me",
            "drive_c/users/old", "drive_c/users/old/AppData", "dosdevices",    "drive_c/App"};
        const QStringList names{"a.dll",     "kernel32.dll", "c:",  "z:", "me",
                                "Documents", "Desktop",      "old", "x"};
        int accepted = 0, whole = 0;
        const TestSupport::TestHome home;
        const QString original = home.path() + "/template/";
        home.write("outside/kept", "outside");
        home.write("template/system.reg", "of the template");
        home.write("template/drive_c/windows/system32/kernel32.dll", "of Wine");
        home.write("template/drive_c/users/me/x", "of the template");
        QDir().mkpath(original + "dosdevices");
        QFile::link("../drive_c", original + "dosdevices/c:");
        QFile::link(home.path() + "/outside", original + "dosdevices/z:");
        QFile::link(home.path() + "/outside", original + "drive_c/users/me/Documents");
        QFile::link(home.path() + "/outside/kept", original + "drive_c/windows/a.dll");
        const auto outside = treeOf(home.path() + "/outside"), pristine = treeOf(home.path() + "/template");
        for (int round = 0; round < 300; ++round) {
            const QString bottle = home.path() + QString("/bottle%1/").arg(round);
            const auto pick = [&random](const QStringList& from) {
                return from[random.bounded(from.size())];
            };
            QJsonArray entries{QJsonObject{{"path", "bottle.yml"}, {"size", 0}},
                               QJsonObject{{"path", "drive_c"}, {"type", "directory"}},
                               QJsonObject{{"path", "system.reg"}, {"size", 0}},
                               QJsonObject{{"path", "user.reg"}, {"size", 0}}},
                wine{"drive_c/windows/system32/kernel32.dll"}, links{"dosdevices/c:"};
            for (const QString& place : places) {
                if (random.bounded(20))
                    entries += QJsonObject{{"path", place}, {"type", "directory"}};
            }
            for (int i = random.bounded(4); i > 0; --i) {
                const QString path = pick(places) + '/' + pick(names);
                switch (random.bounded(4)) {
                    case 0:
                        entries += QJsonObject{{"path", path}, {"size", 0}};
                        break;
                    case 1:
                        entries += QJsonObject{{"path", path},
                                               {"link", pick({"x", "../App", "../users/old", "old"})}};
                        break;
                    case 2:
                        wine += path;
                        break;
                    default:
                        links += path;
                }
            }
            QString error;
            const auto list =
                BackupList::parse(QJsonDocument(QJsonObject{{"format", 1},
                                                            {"program", "cellarix"},
                                                            {"name", "b"},
                                                            {"user", pick({"", "me", "old", "x", "OLD"})},
                                                            {"entries", entries},
                                                            {"wineFiles", wine},
                                                            {"standardLinks", links}})
                                      .toJson(),
                                  &error);
            if (!list)
                continue;
            ++accepted;
            for (const BackupEntry& entry : list->entries) {
                const QString path = bottle + QFile::decodeName(entry.path);
                if (entry.type == BackupEntry::Type::Directory)
                    QVERIFY(QDir().mkpath(path));
                else if (entry.type == BackupEntry::Type::Link)
                    QVERIFY(QFile::link(QFile::decodeName(entry.target), path));
                else
                    home.write(bottle.mid(home.path().size() + 1) + QFile::decodeName(entry.path), "mine");
            }
            const auto before = treeOf(bottle.chopped(1));
            bool isOtherBuild = false;
            const Reason fault = RestoredPrefix::complete(
                *list, {bottle.chopped(1), original.chopped(1), {}, {}}, &isOtherBuild, false);
            whole += fault.isEmpty();
            QCOMPARE(treeOf(home.path() + "/outside"), outside);
            QCOMPARE(treeOf(home.path() + "/template"), pristine);
            const auto after = treeOf(bottle.chopped(1));
            for (auto it = before.begin(); it != before.end(); ++it) {
                if (it.value() == "mine")  // also behind the new name of its user
                    QVERIFY2(TestSupport::readFile(bottle + it.key()) == "mine", qPrintable(it.key()));
            }
            // A link that was not unpacked is the template's, or leads from the user's old name to the new
            // one.
            for (auto it = after.begin(); it != after.end(); ++it) {
                const bool leadsOut =
                    QFileInfo(bottle + it.key()).isSymLink() && it.value().contains("/outside");
                QVERIFY2(!leadsOut || pristine.value(it.key()) == it.value(), qPrintable(it.key()));
            }
        }
        QVERIFY2(accepted > 60 && whole > 30, qPrintable(QString("%1 %2").arg(accepted).arg(whole)));
    }
};

QTEST_GUILESS_MAIN(RestoredPrefixTest)
#include "RestoredPrefixTest.moc"
