#include "probes/Packages.h"
#include "support/LogCapture.h"
#include "support/Table.h"
#include "support/TestHome.h"

class PackagesTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void unmet_data() {
        // Installed: a 1.0, c 1.5, libfoo:i386 2:3.1-1.
        const TestSupport::Table<QString> row("unmet");
        row("a, b | c (>= 2.0)", "b() c(>= 2.0)");
        row("a (= 1.0), a (<< 1.0), b", "a(<< 1.0) b()");
        row("a (< 1.0)", "a(< 1.0)");
        row("a (> 1.0) | a (<= 1.0)", "");
        row("libfoo:i386 (>= 1:2.3)", "");  // compared with the digit before the colon
        row("libfoo:i386 (>= 9:2.3)", "libfoo:i386(>= 9:2.3)");
        row("a (beautiful)", "a(beautiful)");
        row("c(>=2),, | ,a", "c(>=2)");
    }
    void unmet() {
        const QMap<QString, QString> machine = {{"a", "1.0"}, {"c", "1.5"}, {"libfoo:i386", "2:3.1-1"}};
        const PackageQueries queries = {
            [&](const QString& package, QString* version) {
                *version = machine.value(package);
                return machine.contains(package);
            },
            [](const QString& installed, const QString& relation, const QString& required) {
                if (installed.startsWith("2:"))
                    return relation == "ge" && required.size() == 1 && required < "2";
                const int order = installed.compare(required);
                return (relation == "lt" && order < 0) || (relation == "le" && order <= 0) ||
                       (relation == "eq" && order == 0) || (relation == "ge" && order >= 0) ||
                       (relation == "gt" && order > 0);
            }};
        const PackageRequirements requirements = unmetDependencies(QTest::currentDataTag(), queries);
        QStringList texts;
        for (auto entry = requirements.begin(); entry != requirements.end(); ++entry)
            texts.append(QString("%1(%2)").arg(entry.key(), entry.value()));
        QTEST(texts.join(' '), "unmet");
    }

    void thisMachine() {
        if (QStandardPaths::findExecutable("dpkg-query").isEmpty())
            QSKIP("needs dpkg-query");
        const TestSupport::LogCapture log;
        QCOMPARE(installedPackages({"dpk?", "no-such-package-at-all"}), QStringList{"dpkg"});
        QVERIFY(!packageInstalled("no-such-package-at-all"));
        QCOMPARE(packageVersion("--help"), QString());
        QVERIFY(dependenciesMet("no-such-package-at-all | dpkg (>= 1.0), libc-bin"));
        QCOMPARE(unmetDependencies("dpkg (>> 999)"), (PackageRequirements{{"dpkg", ">> 999"}}));
    }

    void severalArchitectures() {
        if (QStandardPaths::findExecutable("dpkg-query").isEmpty())
            QSKIP("needs dpkg-query");
        const char installed[] = "install ok installed", removed[] = "deinstall ok config-files";
        QByteArray status;
        for (const auto& [name, amd64, i386] : {std::tuple{"both", installed, installed},
                                                {"first", installed, removed},
                                                {"second", removed, installed}}) {
            for (const auto& [architecture, state] : {std::pair{"amd64", amd64}, {"i386", i386}})
                status += QString(
                              "Package: %1\nArchitecture: %2\nMulti-Arch: same\nStatus: %3\n"
                              "Version: %4\nMaintainer: x\nDescription: x\n\n")
                              .arg(name, architecture, state, state == removed ? "1.0" : "1:2.0-3deb12")
                              .toUtf8();
        }
        const TestSupport::TestHome home;
        home.write("dpkg/updates/.keep", {});
        home.write("dpkg/info/format", "1\n");
        TestSupport::EnvironmentGuard database;
        database.set("DPKG_ADMINDIR", QFileInfo(home.write("dpkg/status", status)).path().toUtf8());
        for (const char* name : {"both", "both:i386", "first", "second"}) {
            QString version;
            QVERIFY2(packageInstalled(name, &version), name);
            QCOMPARE(version, QString("1:2.0-3deb12"));
            QCOMPARE(packageVersion(name), version);
        }
        QVERIFY(!packageInstalled("second:amd64"));
        QCOMPARE(installedPackages({"both", "first", "second"}), QStringList({"both", "first", "second"}));
    }

    void statusLines() {
        QCOMPARE(parseInstalledPackages("a|install ok installed\nb|deinstall ok config-files\nbroken\n\n"
                                        "c|unknown ok not-installed\nd|install ok installed\n"),
                 QStringList({"a", "d"}));
        QCOMPARE(parsePackageVersion("Package: x\nConfig-Version: 9\nVersion:  1:2.0-3 \n"),
                 QString("1:2.0-3"));
    }

    void candidates_data() {
        const TestSupport::Table<QString, bool> row("policy", "isAvailable");
        row("unknown", "", false);
        row("only known", "x:\n  Installed: (none)\n  Candidate: (none)\n  Version table:\n", false);
        row("to be had", "x:\n  Installed: (none)\n  Candidate: 1:2.0-3\n  Version table:\n", true);
    }
    void candidates() {
        QFETCH(QString, policy);
        QTEST(parseHasCandidate(policy), "isAvailable");
    }
};

QTEST_GUILESS_MAIN(PackagesTest)
#include "PackagesTest.moc"
