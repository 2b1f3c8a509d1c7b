#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QProcess>
#include <QSignalSpy>
#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "fenk/instance/SingleInstance.h"
#include "fenk/instance/SingleInstanceMessage.h"
#include "fenk/instance/SingleInstanceServer.h"
#include "support/Table.h"
#include "support/TestHome.h"

using namespace Fenk;
using SingleInstanceMessage::State;
using TestSupport::Table;
using TestSupport::TestHome;
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
    void wake() { m_process.write("x"); }

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

class SingleInstanceTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void parse_data() {
        const Table<QByteArray, State, QStringList> row("bytes", "state", "arguments");
        const QStringList words{"cellarix", "--open", "", "C:\\a b.exe", QString::fromUtf8("微信\n")};
        const QByteArray good = SingleInstanceMessage::encode(words);
        row("words", good, State::Value, words);
        const auto invalid = [&row](const char* tag, const QByteArray& bytes) {
            row(tag, bytes, State::Invalid, {});
        };
        invalid("more than one message", good + good);
        invalid("other protocol", "GET / HTTP/1.1\r\n");
        invalid("wrong from the first byte", "X");
        invalid("oversize", header(SingleInstanceMessage::MaxBytes + 1));
        invalid("undersize", header(3));
        const auto body = [](const QByteArray& hex) {
            const QByteArray bytes = QByteArray::fromHex(hex);
            return QByteArray(header(quint32(bytes.size())) + bytes);
        };
        row("no words", body("00000000"), State::Value, {});
        invalid("huge count", body("ffffffff"));
        invalid("count beyond the words", body("00000002 00000001 61"));
        invalid("length beyond the end", body("00000001 7fffffff 61"));
        invalid("bytes left over", body("00000001 00000001 6162"));
        invalid("not UTF-8", body("00000001 00000001 ff"));
        invalid("NUL", body("00000001 00000001 00"));
    }
    void parse() {
        QFETCH(QByteArray, bytes);
        const SingleInstanceMessage::Parsed parsed = SingleInstanceMessage::parse(bytes);
        QTEST(parsed.state, "state");
        QTEST(parsed.state == State::Value ? parsed.arguments : QStringList(), "arguments");
    }

    void everyPrefixIsIncomplete() {
        const QByteArray whole = SingleInstanceMessage::encode({"a", "bc"});
        for (int size = 0; size < whole.size(); ++size)
            QCOMPARE(SingleInstanceMessage::parse(whole.left(size)).state, State::Incomplete);
    }

    void limits() {
        const auto encoded = [](const QStringList& words) { return SingleInstanceMessage::encode(words); };
        QVERIFY(encoded({QString(int(SingleInstanceMessage::MaxBytes), 'x')}).isEmpty());
        QStringList many;
        for (quint32 i = 0; i < SingleInstanceMessage::MaxArguments; ++i)
            many.append("x");
        QCOMPARE(SingleInstanceMessage::parse(encoded(many)).arguments, many);
        QVERIFY(encoded(many + QStringList("x")).isEmpty());
    }

    void absoluteFiles() {
        const TestHome home;
        for (const char* name : {"setup.exe", "sub/b.exe", "--debug"})
            home.write(name, "");
        // The program's own name, directories (a bottle may have the same name) and other words stay.
        const QStringList words{"setup.exe",
                                "setup.exe",
                                "sub/b.exe",
                                "sub",
                                "other.exe",
                                "--debug",
                                "lumorawine://bottle/uuid",
                                "/etc/passwd",
                                ""};
        QStringList expected = words;
        expected[1] = home.path() + "/setup.exe";
        expected[2] = home.path() + "/sub/b.exe";
        QCOMPARE(SingleInstance::withAbsoluteFiles(words, home.path()), expected);
    }

    void oneOfTwentyIsFirst() {
        const TestHome home;
        OwnedFd gate(::open(qPrintable(home.path() + "/gate"), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
        QCOMPARE(::flock(gate.get(), LOCK_EX), 0);
        std::vector<std::unique_ptr<Peer>> peers;
        for (int i = 0; i < 20; ++i)
            peers.push_back(std::make_unique<Peer>(home.path(), "gate", QStringList{QString::number(i)}));
        for (const auto& peer : peers)
            QTRY_VERIFY_WITH_TIMEOUT(peer->said("waiting"), 30000);
        gate.reset();
        const auto delivered = [](const auto& peer) { return peer->said("delivered"); };
        QTRY_COMPARE_WITH_TIMEOUT(int(std::count_if(peers.begin(), peers.end(), delivered)), 19, 30000);
        const auto first = std::find_if_not(peers.begin(), peers.end(), delivered);
        QVERIFY((*first)->said("first"));
        QTRY_COMPARE((*first)->lines().filter("got peer|").size(), 19);
        QStringList got = (*first)->lines().filter("got peer|");
        QCOMPARE(got.removeDuplicates(), 0);
    }

    void killedInstanceLeavesNothingInTheWay() {
        const TestHome home;
        Peer first(home.path(), "plain", {});
        QTRY_VERIFY(first.said("first"));
        first.kill();
        QVERIFY(QFileInfo::exists(home.path() + "/peer.socket"));
        Peer second(home.path(), "plain", {});
        QTRY_VERIFY(second.said("first"));
        const QString file = home.write("a b.exe", "");
        Peer third(home.path(), "plain", {"a b.exe"}, 20000, home.path());
        QTRY_VERIFY(third.said("delivered"));
        QTRY_VERIFY(second.said("got peer|" + file));
    }

    void waitingSenderTakesOverFromKilledOwner() {
        const TestHome home;
        Peer owner(home.path(), "late", {});
        QTRY_VERIFY(owner.said("first"));
        Peer sender(home.path(), "plain", {"x"});
        QTRY_VERIFY(sender.said("claiming"));
        owner.kill();
        QTRY_VERIFY(sender.said("first"));
    }

    void argumentsBeforeTheEventLoopAreKept() {
        const TestHome home;
        Peer owner(home.path(), "late", {});
        QTRY_VERIFY(owner.said("first"));
        Peer impatient(home.path(), "plain", {"early"}, 100);
        QTRY_VERIFY(impatient.said("unreachable"));
        Peer patient(home.path(), "plain", {"later"});
        QTRY_VERIFY(patient.said("claiming"));
        owner.wake();
        QTRY_VERIFY(patient.said("delivered"));
        QTRY_VERIFY(owner.said("got peer|early") && owner.said("got peer|later"));
    }

    void ownerThatDoesNotYetListenIsWaitedFor() {
        const TestHome home;
        OwnedFd lock(::open(qPrintable(home.path() + "/peer.lock"), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
        QCOMPARE(::flock(lock.get(), LOCK_EX), 0);
        Peer sender(home.path(), "plain", {"x"});
        QTRY_VERIFY(sender.said("claiming"));
        SingleInstanceServer server;
        QSignalSpy received(&server, &SingleInstanceServer::received);
        QVERIFY(server.listen(home.path() + "/peer.socket"));
        QTRY_VERIFY(sender.said("delivered"));
        QTRY_COMPARE(received.size(), 1);
        QCOMPARE(received.at(0).at(1).toStringList(), QStringList({"peer", "x"}));
    }

    void hostilePeers_data() {
        const Table<QByteArray, bool> row("bytes", "close");
        row("garbage", QByteArray(5000, '\xfe'), false);
        row("oversize", header(0xffffffff), false);
        row("breaks off", SingleInstanceMessage::encode({"a"}).left(9), true);
        row("says nothing", "", true);
        row("flood", header(SingleInstanceMessage::MaxBytes) + QByteArray(200000, 'x'), true);
    }
    void hostilePeers() {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, close);
        const TestHome home;
        SingleInstance instance("key", home.path());
        QSignalSpy spy(&instance, &SingleInstance::newProcessInstance);
        QCOMPARE(instance.claim({}), SingleInstance::Claim::First);
        QCOMPARE(int(QFile::permissions(instance.socketPath()) & 0x77), 0);
        const auto send = [](const OwnedFd& socket, const QByteArray& data) {
            return int(::send(socket.get(), data.constData(), size_t(data.size()), MSG_NOSIGNAL));
        };
        const OwnedFd socket = connectRaw(instance.socketPath());
        QVERIFY(socket.isValid());
        send(socket, bytes);
        if (close)
            ::shutdown(socket.get(), SHUT_WR);
        char answer = 0;
        QTRY_VERIFY(answer != 0 || ::recv(socket.get(), &answer, 1, 0) == 1);
        QCOMPARE(answer, SingleInstanceServer::Refused);

        const OwnedFd honest = connectRaw(instance.socketPath());
        const QByteArray message = SingleInstanceMessage::encode({"p", "x"});
        QCOMPARE(send(honest, message), message.size());
        QTRY_COMPARE(spy.size(), 1);
        QCOMPARE(spy.at(0).at(0).toLongLong(), qint64(::getpid()));
    }

    void unsafeDirectoryIsNotUsed() {
        const TestHome home;
        const auto socketPath = [](const QString& key) { return SingleInstance(key).socketPath(); };
        QVERIFY(socketPath("key").startsWith(home.runtime()));
        QCOMPARE(::chmod(qPrintable(home.runtime()), 0777), 0);
        QVERIFY(!socketPath("key").startsWith(home.runtime()));
        // Neither a key nor a long path may lead elsewhere.
        QVERIFY(!socketPath("../../etc/x").contains(".."));
        const QString deep = home.path() + '/' + QString(120, 'd');
        QVERIFY(QDir().mkpath(deep));
        QCOMPARE(::chmod(qPrintable(deep), 0700), 0);
        QVERIFY(SingleInstance("key", deep).socketPath().size() < 100);
    }
};

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "SingleInstanceTest.moc"
