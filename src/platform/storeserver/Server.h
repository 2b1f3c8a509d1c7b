#pragma once

#include "storeserver/CatalogueKeeper.h"
#include "storeserver/Options.h"
#include "storeserver/reports/ReportService.h"
#include "storeserver/server/HttpServer.h"

namespace StoreServer {

/// The store: a directory, its catalogue and a web server for it. Lives in the main thread.
class Server {
public:
    /// Throws SqlError if there is no room for temporary files, and ReportError if no reports can be taken.
    explicit Server(const Options& options);

    /// Listens, reads the directory and begins to answer. On failure an English text; a later call tries
    /// again, one after success does nothing. In a session it may wait some seconds for the usual port,
    /// within the first few of this object.
    QString start();
    /// "http://127.0.0.1:8630", where it listens.
    const std::string& address() const { return m_address; }
    /// Looks for changes of the directory now.
    void refresh() { m_keeper.poke(); }

    const ServerActivity& activity() const { return m_http.activity(); }
    void touch() { m_http.touch(); }

private:
    QString begin();
    std::string listen();
    HttpExchange::Handler handlerOf(int thread) const;

    const Options m_options;
    std::unique_ptr<ReportService> m_reports;  // null if none are taken
    CatalogueKeeper m_keeper;
    StoreAddress m_publicAddress;
    std::string m_address;
    const std::chrono::steady_clock::time_point m_created = std::chrono::steady_clock::now();
    bool m_isStarted = false;
    HttpServer m_http;  // the last, since its threads use the rest
};

}  // namespace StoreServer
