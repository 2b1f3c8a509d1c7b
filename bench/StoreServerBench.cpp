// The store server with 10 000 generated applications and 200 clients at once, each of which sends its next
// request as soon as it has an answer: lists in all orders, categories and languages, searches, single
// applications. To compare, a server in this process that always sends the same bytes, as many as a list has.
// Prints a table of requests a second, percentiles in ms and their ratios to it, and the server's memory.
// Limits for 10 000 applications: 20 ms for the 99th percentile of lists and 256 MiB; the exit status is 1 if
// one is exceeded.
//
//     build/<preset>/bench/StoreServerBench [applications 10000] [clients 200] [seconds 5] [threads of the
//     server]
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QDate>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <thread>

#include "fenk/system/OwnedFd.h"
#include "support/ChildProcess.h"
#include "support/StoreFiles.h"
#include "support/TestHome.h"

namespace {

constexpr double LongestMs = 20;
constexpr double MostMiB = 256;
constexpr int LimitedSize = 10000;
constexpr int StartMs = 300000;
constexpr double WarmUpSeconds = 0.5;
constexpr int EventsAtOnce = 256;
constexpr int ReadBytes = 256 * 1024;

using Clock = std::chrono::steady_clock;
using RequestMaker = std::function<QByteArray(std::mt19937&)>;

struct Result {
    int errors = 0;
    double perSecond = 0;
    double half = 0;     ///< ms
    double highest = 0;  ///< ms, the 99th percentile
    double size = 0;     ///< bytes of an answer, on average
    double work = 0;     ///< microseconds that the server computes for an answer
};

sockaddr_in local(int port) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(quint16(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// A client with one connection and one request under way.
struct Client {
    Fenk::OwnedFd fd;
    QByteArray head;
    qint64 received = 0;
    qint64 expected = -1;  ///< of head and body, when the head is complete
    bool isGood = false;
    Clock::time_point since;

    void ask(const QByteArray& request) {
        head.clear();
        received = 0;
        expected = -1;
        since = Clock::now();
        [[maybe_unused]] const ssize_t sent =
            ::send(fd.get(), request.constData(), size_t(request.size()), 0);
    }
    /// True when the answer is complete.
    bool take(const char* bytes, qint64 count) {
        static const QByteArray length = "Content-Length: ";
        received += count;
        if (expected < 0) {
            head.append(bytes, int(count));
            const int end = head.indexOf("\r\n\r\n");
            if (end < 0)
                return false;
            const int place = head.indexOf(length) + length.size();
            expected = end + 4 + head.mid(place, head.indexOf('\r', place) - place).toLongLong();
            isGood = head.startsWith("HTTP/1.1 200 ");
        }
        return received >= expected;
    }
};

Result load(int port, int clients, double seconds, const RequestMaker& request) {
    std::mt19937 random(1);
    std::vector<Client> all{size_t(clients)};
    const Fenk::OwnedFd epoll(::epoll_create1(0));
    const sockaddr_in address = local(port);
    for (size_t index = 0; index < all.size(); ++index) {
        all[index].fd.reset(::socket(AF_INET, SOCK_STREAM, 0));
        if (::connect(all[index].fd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
            qFatal("no connection to port %d: %s", port, std::strerror(errno));
        epoll_event event = {};
        event.events = EPOLLIN;
        event.data.u64 = index;
        ::epoll_ctl(epoll.get(), EPOLL_CTL_ADD, all[index].fd.get(), &event);
        all[index].ask(request(random));
    }
    Result result;
    std::vector<double> times;
    std::vector<char> bytes(ReadBytes);
    double sum = 0;
    Clock::time_point begin = Clock::now();
    const auto spent = [&begin] { return std::chrono::duration<double>(Clock::now() - begin).count(); };
    epoll_event events[EventsAtOnce];
    bool isWarm = false;
    while (!isWarm || spent() < seconds) {
        if (!isWarm && spent() > WarmUpSeconds) {  // all have connected one after the other
            isWarm = true;
            begin = Clock::now();
            times.clear();
            sum = 0;
        }
        const int count = ::epoll_wait(epoll.get(), events, EventsAtOnce, 1000);
        for (int index = 0; index < count; ++index) {
            Client& client = all[events[index].data.u64];
            const ssize_t got = ::recv(client.fd.get(), bytes.data(), bytes.size(), 0);
            if (got <= 0)
                qFatal("the server has ended a connection");
            if (!client.take(bytes.data(), got))
                continue;
            times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - client.since).count());
            sum += double(client.received);
            result.errors += client.isGood ? 0 : 1;
            client.ask(request(random));
        }
    }
    std::sort(times.begin(), times.end());
    if (times.empty())
        qFatal("no answer within %.1f s", seconds);
    result.perSecond = double(times.size()) / spent();
    result.half = times[times.size() / 2];
    result.highest = times[times.size() * 99 / 100];
    result.size = sum / double(times.size());
    return result;
}

/// Sends the same bytes for whatever comes. Ends with its object.
class ConstantServer {
public:
    explicit ConstantServer(qint64 size)
        : m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0)), m_epoll(::epoll_create1(0)) {
        const QByteArray head = "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(size) + "\r\n\r\n";
        m_answer = head + QByteArray(int(size), 'x');
        sockaddr_in address = local(0);
        socklen_t length = sizeof address;
        ::bind(m_listener.get(), reinterpret_cast<sockaddr*>(&address), length);
        ::listen(m_listener.get(), 1024);
        ::getsockname(m_listener.get(), reinterpret_cast<sockaddr*>(&address), &length);
        m_port = ntohs(address.sin_port);
        watch(m_listener.get());
        m_thread = std::thread([this] { run(); });
    }
    ~ConstantServer() {
        m_isEnding = true;
        m_thread.join();
    }
    int port() const { return m_port; }

private:
    void watch(int fd) {
        epoll_event event = {};
        event.events = EPOLLIN;
        event.data.fd = fd;
        ::epoll_ctl(m_epoll.get(), EPOLL_CTL_ADD, fd, &event);
    }
    void run() {
        epoll_event events[EventsAtOnce];
        std::vector<Fenk::OwnedFd> connections;
        char bytes[4096];
        while (!m_isEnding) {
            const int count = ::epoll_wait(m_epoll.get(), events, EventsAtOnce, 100);
            for (int index = 0; index < count; ++index) {
                const int fd = events[index].data.fd;
                if (fd == m_listener.get()) {
                    connections.emplace_back(::accept(fd, nullptr, nullptr));
                    watch(connections.back().get());
                } else if (::recv(fd, bytes, sizeof bytes, 0) > 0) {
                    [[maybe_unused]] const ssize_t sent =
                        ::send(fd, m_answer.constData(), size_t(m_answer.size()), MSG_NOSIGNAL);
                } else {
                    ::epoll_ctl(m_epoll.get(), EPOLL_CTL_DEL, fd, nullptr);
                }
            }
        }
    }

    Fenk::OwnedFd m_listener;
    Fenk::OwnedFd m_epoll;
    QByteArray m_answer;
    int m_port = 0;
    std::atomic<bool> m_isEnding = false;
    std::thread m_thread;
};

void makeStore(const TestSupport::StoreFiles& files, int count) {
    static const QStringList english = {"Notes",  "Paint",   "Music",  "Archive",
                                        "Ledger", "Planner", "Reader", "Camera"};
    static const QStringList chinese = {"记事本", "画图", "音乐", "压缩", "账本", "日程", "阅读", "相机"};
    std::mt19937 random(2);
    for (int id = 1; id <= count; ++id) {
        const int word = int(random() % 8);
        files.add(QString("app-%1").arg(id),
                  {id, QString("%1 %2").arg(english[word]).arg(id),
                   QString("%1%2").arg(chinese[word]).arg(id), int(random() % 2) + 1, int(random() % 1000000),
                   int(random() % 6), QDate(2015, 1, 1).addDays(random() % 3000).toString(Qt::ISODate)});
    }
}

QByteArray get(const QByteArray& path, std::mt19937& random) {
    return "GET " + path +
           " HTTP/1.1\r\nHost: store.example\r\nX-VESK-Language: " + (random() % 2 ? "zh_CN" : "en_US") +
           "\r\nUser-Agent: bench\r\nAccept-Encoding: identity\r\n\r\n";
}

QByteArray list(int apps, std::mt19937& random) {
    static const QByteArray fields[] = {"update_time", "download_count", "score"};
    const int pages = std::max(1, apps / 40);
    // Most look at the first pages.
    const int page = random() % 4 ? int(random() % 5) : int(random() % unsigned(pages));
    return get("/vesk/client/apps?" + QByteArray(random() % 2 ? "category=1&" : "") + "pageIndex=" +
                   QByteArray::number(page + 1) + "&pageSize=20&field=" + fields[random() % 3] + "&sort=desc",
               random);
}

QByteArray search(int apps, std::mt19937& random) {
    const QByteArray number = QByteArray::number(int(random() % unsigned(apps)) + 1);
    const QByteArray words[] = {"notes " + number, "%E8%AE%B0%E4%BA%8B" + number, "%E5%8E%8B%E7%BC%A9",
                                "led"};
    return get("/vesk/client/search?keyword=" + QByteArray(words[random() % 4]).replace(' ', "%20") +
                   "&pageIndex=1&pageSize=20",
               random);
}

QByteArray appInfo(int apps, std::mt19937& random) {
    return get("/vesk/client/appInfo?appInfoId=app-" + QByteArray::number(int(random() % unsigned(apps)) + 1),
               random);
}

/// Seconds that a process has computed.
double work(qint64 process) {
    const QByteArray facts = TestSupport::readFile(QString("/proc/%1/stat").arg(process));
    const QList<QByteArray> words = facts.mid(facts.lastIndexOf(')') + 2).split(' ');
    return (words.value(11).toDouble() + words.value(12).toDouble()) / double(::sysconf(_SC_CLK_TCK));
}

double memory(qint64 process) {
    static const QRegularExpression form("VmHWM:\\s*(\\d+) kB");
    const QString status =
        QString::fromLatin1(TestSupport::readFile(QString("/proc/%1/status").arg(process)));
    return form.match(status).captured(1).toDouble() / 1024;
}

Result loadServer(qint64 process, int port, int clients, double seconds, const RequestMaker& request) {
    const double before = work(process);
    Result result = load(port, clients, seconds, request);
    result.work = (work(process) - before) * 1e6 / (result.perSecond * (seconds + WarmUpSeconds));
    return result;
}

void print(const char* name, const Result& result, const Result& base) {
    std::printf("%-18s %10.0f %8.1f %8.2f %8.2f %10.1f %8.0f %7d\n", name, result.perSecond,
                result.size / 1024, result.half, result.highest, result.highest / base.highest, result.work,
                result.errors);
}

}  // namespace

int main(int argc, char** argv) {
    const int apps = argc > 1 ? std::atoi(argv[1]) : LimitedSize;
    const int clients = argc > 2 ? std::atoi(argv[2]) : 200;
    const double seconds = argc > 3 ? std::atof(argv[3]) : 5;
    const TestSupport::StoreFiles files;
    makeStore(files, apps);

    TestSupport::ChildProcess server;
    server.setProcessChannelMode(QProcess::MergedChannels);
    QElapsedTimer start;
    start.start();
    server.start(STORE_SERVER, QStringList{"--data", files.path(), "--listen", "127.0.0.1:0"} +
                                   (argc > 4 ? QStringList{"--threads", argv[4]} : QStringList()));
    QString line;
    do
        line = server.readLineWithin(StartMs);
    while (!line.isEmpty() && !line.contains("listening on"));
    const int port = line.section(':', -1).toInt();
    if (port == 0)
        qFatal("the server does not start");
    std::printf("%d applications are read in %.1f s, %d clients\n", apps, double(start.elapsed()) / 1000,
                clients);

    const auto measure = [&](QByteArray (*request)(int, std::mt19937&)) {
        return loadServer(server.processId(), port, clients, seconds,
                          [=](std::mt19937& random) { return request(apps, random); });
    };
    const Result lists = measure(list);
    const ConstantServer constant(qint64(lists.size));
    const Result base =
        load(constant.port(), clients, seconds, [apps](std::mt19937& random) { return list(apps, random); });
    std::printf("%-18s %10s %8s %8s %8s %10s %8s %7s\n", "", "requests/s", "KiB", "p50 ms", "p99 ms",
                "p99 ratio", "work us", "errors");
    print("constant bytes", base, base);
    print("lists", lists, base);
    print("searches", measure(search), base);
    print("one application", measure(appInfo), base);
    const double most = memory(server.processId());
    std::printf("memory %.0f MiB\n", most);
    const bool isLimited = apps == LimitedSize && clients <= 200;
    return isLimited && (lists.highest > LongestMs || most > MostMiB || lists.errors > 0) ? 1 : 0;
}
