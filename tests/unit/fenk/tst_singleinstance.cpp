#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>
#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "fenk/SingleInstance.h"
#include "fenk/SingleInstanceMessage.h"
#include "fenk/SingleInstanceServer.h"

using namespace Fenk;
using SingleInstanceMessage::State;
Q_DECLARE_METATYPE(Fenk::SingleInstanceMessage::State)

namespace {

class Peer {
public:
    Peer(const QString& directory, const QString& mode, const QStringList& arguments, int timeoutMs = 20000,
         const QString& workingDirectory = {}) {
        m_process.setWorkingDirectory(workingDirectory);
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(PEER, QStringList{directory, QString::number(timeoutMs), mode} + arguments);
    }
    ~Peer() { kill(); }
    void kill() {
        m_process.kill();
        m_process.waitForFinished();
    }
    QStringList lines() {
        m_output += m_process.readAllStandardOutput();
        return QString::fromUtf8(m_output).split('\n', Qt::SkipEmptyParts);
    }
    bool said(const QString& line) { return lines().contains(line); }
    QProcess& process() { return m_process; }

private:
    QProcess m_process;
    QByteArray m_output;
};

OwnedFd connectRaw(const QString& path) {
    OwnedFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, qPrintable(path), sizeof(address.sun_path) - 1);
    if (::connect(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0)
        socket.reset();
    return socket;
}

QByteArray header(quint32 length) {
    QByteArray bytes("FNK1");
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.append(char(length >> shift));
    return bytes;
}

}  // namespace

class TestSingleInstance : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void parse_data();
    void parse();
    void everyPrefixIsIncomplete();
    void limits();
    void absoluteFiles_data();
    void absoluteFiles();
    void oneOfTwentyIsFirst();
    void killedInstanceLeavesNothingInTheWay();
    void waitingSenderTakesOverFromKilledOwner();
    void argumentsBeforeTheEventLoopAreKept();
    void ownerThatDoesNotYetListenIsWaitedFor();
    void hostilePeers_data();
    void hostilePeers();
    void unsafeDirectoryIsNotUsed();
};

void TestSingleInstance::parse_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<State>("state");
    QTest::addColumn<QStringList>("arguments");
    const QStringList words{"cellarix", "--open", "", "C:\\a b.exe", QString::fromUtf8("微信\n")};
    const QByteArray good = SingleInstanceMessage::encode(words);
    const auto body = [](const QByteArray& hex) {
        const QByteArray bytes = QByteArray::fromHex(hex);
        return QByteArray(header(quint32(bytes.size())) + bytes);
    };
    QTest::newRow("words") << good << State::Value << words;
    QTest::newRow("no words") << body("00000000") << State::Value << QStringList();
    QTest::newRow("more than one message") << QByteArray(good + good) << State::Invalid << QStringList();
    QTest::newRow("other protocol") << QByteArray("GET / HTTP/1.1\r\n") << State::Invalid << QStringList();
    QTest::newRow("wrong from the first byte") << QByteArray("X") << State::Invalid << QStringList();
    QTest::newRow("oversize") << header(SingleInstanceMessage::MaxBytes + 1) << State::Invalid
                              << QStringList();
    QTest::newRow("undersize") << header(3) << State::Invalid << QStringList();
    QTest::newRow("huge count") << body("ffffffff") << State::Invalid << QStringList();
    QTest::newRow("count beyond the words") << body(
                                                   "00000002"
                                                   "00000001"
                                                   "61")
                                            << State::Invalid << QStringList();
    QTest::newRow("length beyond the end") << body(
                                                  "00000001"
                                                  "7fffffff"
                                                  "61")
                                           << State::Invalid << QStringList();
    QTest::newRow("bytes left over") << body(
                                            "00000001"
                                            "00000001"
                                            "6162")
                                     << State::Invalid << QStringList();
    QTest::newRow("not UTF-8") << body(
                                      "00000001"
                                      "00000001"
                                      "ff")
                               << State::Invalid << QStringList();
    QTest::newRow("NUL") << body(
                                "00000001"
                                "00000001"
                                "00")
                         << State::Invalid << QStringList();
}

void TestSingleInstance::parse() {
    QFETCH(QByteArray, bytes);
    const SingleInstanceMessage::Parsed parsed = SingleInstanceMessage::parse(bytes);
    QTEST(parsed.state, "state");
    if (parsed.state == State::Value)
        QTEST(parsed.arguments, "arguments");
}

void TestSingleInstance::everyPrefixIsIncomplete() {
    const QByteArray whole = SingleInstanceMessage::encode({"a", "bc"});
    for (int size = 0; size < whole.size(); ++size)
        QCOMPARE(SingleInstanceMessage::parse(whole.left(size)).state, State::Incomplete);
}

void TestSingleInstance::limits() {
    QVERIFY(SingleInstanceMessage::encode({QString(int(SingleInstanceMessage::MaxBytes), 'x')}).isEmpty());
    QStringList many;
    for (quint32 i = 0; i <= SingleInstanceMessage::MaxArguments; ++i)
        many.append("x");
    QVERIFY(SingleInstanceMessage::encode(many).isEmpty());
    many.removeLast();
    QCOMPARE(SingleInstanceMessage::parse(SingleInstanceMessage::encode(many)).arguments, many);
}

void TestSingleInstance::absoluteFiles_data() {
    QTest::addColumn<QString>("argument");
    QTest::addColumn<bool>("changed");
    QTest::newRow("file") << "setup.exe" << true;
    QTest::newRow("file below") << "sub/b.exe" << true;
    QTest::newRow("directory, as a bottle may be named") << "sub" << false;
    QTest::newRow("missing") << "other.exe" << false;
    QTest::newRow("option") << "--debug" << false;
    QTest::newRow("url") << "lumorawine://bottle/uuid" << false;
    QTest::newRow("absolute") << "/etc/passwd" << false;
    QTest::newRow("empty") << "" << false;
}

void TestSingleInstance::absoluteFiles() {
    QFETCH(QString, argument);
    QFETCH(bool, changed);
    QTemporaryDir directory;
    QDir(directory.path()).mkdir("sub");
    for (const char* name : {"setup.exe", "sub/b.exe", "--debug"}) {
        QFile file(directory.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    const QString expected = changed ? directory.filePath(argument) : argument;
    QCOMPARE(SingleInstance::withAbsoluteFiles({"setup.exe", argument}, directory.path()),
             QStringList({"setup.exe", expected}));
}

void TestSingleInstance::oneOfTwentyIsFirst() {
    QTemporaryDir directory;
    OwnedFd gate(::open(qPrintable(directory.filePath("gate")), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    QCOMPARE(::flock(gate.get(), LOCK_EX), 0);
    std::vector<std::unique_ptr<Peer>> peers;
    for (int i = 0; i < 20; ++i)
        peers.push_back(std::make_unique<Peer>(directory.path(), "gate", QStringList{QString::number(i)}));
    for (const auto& peer : peers)
        QTRY_VERIFY_WITH_TIMEOUT(peer->said("waiting"), 30000);
    gate.reset();

    const auto count = [&](const QString& word) {
        return std::count_if(peers.begin(), peers.end(), [&](const auto& peer) { return peer->said(word); });
    };
    QTRY_COMPARE_WITH_TIMEOUT(int(count("delivered")), 19, 30000);
    QCOMPARE(int(count("first")), 1);
    const auto first =
        std::find_if(peers.begin(), peers.end(), [](const auto& p) { return p->said("first"); });
    QTRY_COMPARE((*first)->lines().filter("got peer|").size(), 19);
    QStringList got = (*first)->lines().filter("got peer|");
    QCOMPARE(got.removeDuplicates(), 0);
}

void TestSingleInstance::killedInstanceLeavesNothingInTheWay() {
    QTemporaryDir directory;
    Peer first(directory.path(), "plain", {});
    QTRY_VERIFY(first.said("first"));
    first.kill();
    QVERIFY(QFileInfo::exists(directory.filePath("peer.socket")));

    Peer second(directory.path(), "plain", {});
    QTRY_VERIFY(second.said("first"));

    QFile file(directory.filePath("a b.exe"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    Peer third(directory.path(), "plain", {"a b.exe"}, 20000, directory.path());
    QTRY_VERIFY(third.said("delivered"));
    QTRY_VERIFY(second.said("got peer|" + directory.filePath("a b.exe")));
}

void TestSingleInstance::waitingSenderTakesOverFromKilledOwner() {
    QTemporaryDir directory;
    Peer owner(directory.path(), "late", {});
    QTRY_VERIFY(owner.said("first"));
    Peer sender(directory.path(), "plain", {"x"});
    QTRY_VERIFY(sender.said("claiming"));
    owner.kill();
    QTRY_VERIFY(sender.said("first"));
}

void TestSingleInstance::argumentsBeforeTheEventLoopAreKept() {
    QTemporaryDir directory;
    Peer owner(directory.path(), "late", {});
    QTRY_VERIFY(owner.said("first"));
    Peer impatient(directory.path(), "plain", {"early"}, 100);
    QTRY_VERIFY(impatient.said("unreachable"));
    Peer patient(directory.path(), "plain", {"later"});
    QTRY_VERIFY(patient.said("claiming"));
    owner.process().write("x");
    QTRY_VERIFY(patient.said("delivered"));
    QTRY_VERIFY(owner.said("got peer|early"));
    QTRY_VERIFY(owner.said("got peer|later"));
}

void TestSingleInstance::ownerThatDoesNotYetListenIsWaitedFor() {
    QTemporaryDir directory;
    OwnedFd lock(::open(qPrintable(directory.filePath("peer.lock")), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    QCOMPARE(::flock(lock.get(), LOCK_EX), 0);
    Peer sender(directory.path(), "plain", {"x"});
    QTRY_VERIFY(sender.said("claiming"));
    SingleInstanceServer server;
    QSignalSpy received(&server, &SingleInstanceServer::received);
    QVERIFY(server.listen(directory.filePath("peer.socket")));
    QTRY_VERIFY(sender.said("delivered"));
    QTRY_COMPARE(received.size(), 1);
    QCOMPARE(received.at(0).at(1).toStringList(), QStringList({"peer", "x"}));
}

void TestSingleInstance::hostilePeers_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("close");
    QTest::newRow("garbage") << QByteArray(5000, '\xfe') << false;
    QTest::newRow("oversize") << header(0xffffffff) << false;
    QTest::newRow("breaks off") << SingleInstanceMessage::encode({"a"}).left(9) << true;
    QTest::newRow("says nothing") << QByteArray() << true;
    QTest::newRow("flood") << QByteArray(header(SingleInstanceMessage::MaxBytes) + QByteArray(200000, 'x'))
                           << true;
}

void TestSingleInstance::hostilePeers() {
    QFETCH(QByteArray, bytes);
    QFETCH(bool, close);
    QTemporaryDir directory;
    SingleInstance instance("key", directory.path());
    QSignalSpy spy(&instance, &SingleInstance::newProcessInstance);
    QCOMPARE(instance.claim({}), SingleInstance::Claim::First);
    QCOMPARE(int(QFile::permissions(instance.socketPath()) & 0x77), 0);

    const OwnedFd socket = connectRaw(instance.socketPath());
    QVERIFY(socket.isValid());
    (void)::send(socket.get(), bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL);
    if (close)
        ::shutdown(socket.get(), SHUT_WR);
    char answer = 0;
    QTRY_VERIFY(answer != 0 || ::recv(socket.get(), &answer, 1, 0) == 1);
    QCOMPARE(answer, SingleInstanceServer::Refused);

    const OwnedFd honest = connectRaw(instance.socketPath());
    const QByteArray message = SingleInstanceMessage::encode({"p", "x"});
    QCOMPARE(int(::send(honest.get(), message.constData(), size_t(message.size()), MSG_NOSIGNAL)),
             message.size());
    QTRY_COMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(0).toLongLong(), qint64(::getpid()));
}

void TestSingleInstance::unsafeDirectoryIsNotUsed() {
    QTemporaryDir directory;
    qputenv("XDG_RUNTIME_DIR", directory.path().toUtf8());
    QVERIFY(SingleInstance("key").socketPath().startsWith(directory.path()));
    QCOMPARE(::chmod(qPrintable(directory.path()), 0777), 0);
    QVERIFY(!SingleInstance("key").socketPath().startsWith(directory.path()));
    // Neither a key nor a long path may lead elsewhere.
    QVERIFY(!SingleInstance("../../etc/x").socketPath().contains(".."));
    const QString deep = directory.filePath(QString(120, 'd'));
    QVERIFY(QDir().mkpath(deep));
    QCOMPARE(::chmod(qPrintable(deep), 0700), 0);
    QVERIFY(SingleInstance("key", deep).socketPath().size() < 100);
}

QTEST_GUILESS_MAIN(TestSingleInstance)
#include "tst_singleinstance.moc"
