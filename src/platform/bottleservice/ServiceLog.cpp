#include "bottleservice/ServiceLog.h"

#include <unistd.h>

#include <QLoggingCategory>

#include "fenk/log/Log.h"

namespace ServiceLog {

namespace {

constexpr int FilesLimit = 10;
const char Format[] = "%{time}{yyyy-MM-dd HH:mm:ss.zzz} [%{type:-7}] [%{file}:%{line}] %{message}\n";

}  // namespace

void start(const QString& dataDir) {
    QLoggingCategory::setFilterRules("*.debug=false");
    Fenk::LogManager::setLogFormat(Format);
    // A pipe that nobody reads would block the service.
    if (isatty(STDERR_FILENO) || qEnvironmentVariableIsSet("JOURNAL_STREAM"))
        Fenk::LogManager::registerConsoleAppender();
    auto file = std::make_unique<Fenk::RollingFileAppender>(dataDir + "/service.log");
    file->setDatePattern(Fenk::RollingFileAppender::Daily);
    file->setLogFilesLimit(FilesLimit);
    Fenk::Logger::globalInstance()->registerAppender(std::move(file));
}

}  // namespace ServiceLog
