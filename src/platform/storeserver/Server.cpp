#include "storeserver/Server.h"

#include <unistd.h>

#include <QDateTime>
#include <system_error>
#include <thread>

#include "fenk/system/RegularFile.h"
#include "storeserver/reports/ReportSignature.h"
#include "storeserver/request/AnswerCache.h"
#include "storeserver/request/StoreAnswers.h"

namespace StoreServer {

namespace {

const char SecretVariable[] = "CELLARIX_REPORT_SECRET";
constexpr qint64 MaximumSecret = 1000;
constexpr size_t CacheBytes = 16 * 1024 * 1024;  // of one thread
constexpr int FirstSessionPort = 20000;
constexpr std::chrono::seconds PortPatience{3};
constexpr std::chrono::milliseconds PortPause{100};
constexpr unsigned SessionPorts = 10000;
constexpr unsigned Spread = 2654435761U;

// The same for a user each time, so that addresses of icons stay the same and what was fetched is kept.
int sessionPort() {
    return FirstSessionPort + int(unsigned(::getuid()) * Spread % SessionPorts);
}

/// Not an argument, which everybody on the machine can read.
QString reportSecret(const QString& directory) {
    const QString file = directory + "/secret";
    QByteArray hex = qgetenv(SecretVariable);
    QFile source;
    if (hex.isEmpty() && Fenk::RegularFile::open(source, file, Fenk::RegularFile::Links::Followed))
        hex = source.read(MaximumSecret);
    const QString secret = ReportSignature::secretOf(hex.trimmed());
    if (secret.isEmpty())
        throw ReportError(
            QString("Reports need a secret of at least 16 bytes, none of them 0, as hexadecimal "
                    "digits in %1 or in the environment variable %2.")
                .arg(file, SecretVariable));
    return secret;
}

std::unique_ptr<ReportService> reportService(const Options& options) {
    if (options.reports.isEmpty())
        return nullptr;
    return std::make_unique<ReportService>(ReportService::Settings{
        options.reports, reportSecret(options.reports), qint64(options.reportsMiB) << 20,
        options.publicAddress, &QDateTime::currentMSecsSinceEpoch});
}

}  // namespace

Server::Server(const Options& options)
    : m_options(options),
      m_reports(reportService(options)),
      m_keeper(options.data, options.threads),
      m_publicAddress(options.publicAddress) {
    if (m_reports)
        m_keeper.setVotes([this] { return m_reports->votes(); });
}

QString Server::start() {
    if (m_isStarted)
        return {};
    QString error;
    try {
        error = begin();
    } catch (const std::system_error& failure) {
        error = QString("The server's threads cannot be started: %1.").arg(failure.what());
    }
    m_isStarted = error.isEmpty();
    if (!m_isStarted)
        m_http.stop();
    return error;
}

QString Server::begin() {
    const std::string error = listen();
    if (!error.empty())
        return QString::fromStdString(error);
    if (!m_keeper.start())
        return "There is no catalogue to serve in " + m_options.data + '.';
    BodyTaker taker;
    if (m_reports)
        taker = [this](const StoreRequest& head, size_t length) { return m_reports->take(head, length); };
    m_http.start(
        m_options.threads, [this](int thread) { return handlerOf(thread); }, {}, taker);
    return {};
}

std::string Server::listen() {
    const bool isSession = m_options.task == Options::Task::ServeSession;
    std::string error = m_http.listen(m_options.host, isSession ? sessionPort() : m_options.port);
    // The server that was here before may still be answering its last requests.
    while (!error.empty() && isSession && std::chrono::steady_clock::now() - m_created < PortPatience) {
        std::this_thread::sleep_for(PortPause);
        error = m_http.listen(m_options.host, sessionPort());
    }
    if (!error.empty() && isSession)
        error = m_http.listen(m_options.host, 0);
    const bool isSixth = m_options.host.find(':') != std::string::npos;
    m_address = "http://" + (isSixth ? '[' + m_options.host + ']' : m_options.host) + ':' +
                std::to_string(m_http.port());
    if (isSession)
        m_publicAddress.set(m_address);
    return error;
}

HttpExchange::Handler Server::handlerOf(int thread) const {
    const auto cache = std::make_shared<AnswerCache>(CacheBytes);
    return [this, thread, cache](const StoreRequest& request) {
        const std::shared_ptr<const Catalogue> catalogue = m_keeper.current();
        if (m_reports && m_reports->isFor(request))
            return m_reports->answer(request, *catalogue);
        const std::string key = answerKey(request, m_publicAddress);
        if (key.empty())
            return storeAnswer(request, m_publicAddress, *catalogue, thread);
        if (const StoreAnswer* known = cache->find(catalogue, key))
            return *known;
        StoreAnswer answer = storeAnswer(request, m_publicAddress, *catalogue, thread);
        cache->insert(key, answer);
        return answer;
    };
}

}  // namespace StoreServer
