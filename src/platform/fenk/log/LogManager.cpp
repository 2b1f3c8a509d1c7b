#include "fenk/log/LogManager.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <memory>
#include <mutex>

#include "fenk/log/ConsoleAppender.h"
#include "fenk/log/Logger.h"

namespace Fenk {
namespace {

struct State {
    std::mutex mutex;
    QString format =
        QStringLiteral("%{time}{yyyy-MM-dd, HH:mm:ss.zzz} [%{type:-7}] %{category}: %{message}\n");
    QString filePath;
};

State& state() {
    static State instance;
    return instance;
}

}  // namespace

void LogManager::setLogFormat(const QString& format) {
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().format = format;
}

QString LogManager::logFormat() {
    const std::lock_guard<std::mutex> lock(state().mutex);
    return state().format;
}

void LogManager::registerConsoleAppender() {
    Logger::globalInstance()->registerAppender(std::make_unique<ConsoleAppender>());
}

QString LogManager::getlogFilePath() {
    const std::lock_guard<std::mutex> lock(state().mutex);
    if (!state().filePath.isEmpty())
        return state().filePath;
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + '/' +
           QCoreApplication::applicationName() + ".log";
}

void LogManager::setlogFilePath(const QString& path) {
    const std::lock_guard<std::mutex> lock(state().mutex);
    state().filePath = path;
}

}  // namespace Fenk
