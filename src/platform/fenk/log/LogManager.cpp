#include "fenk/log/LogManager.h"

#include <QCoreApplication>
#include <QStandardPaths>
#include <memory>
#include <mutex>

#include "fenk/log/ConsoleAppender.h"
#include "fenk/log/Logger.h"

namespace Fenk {
namespace {

struct Choices {
    std::mutex mutex;
    QString format =
        QStringLiteral("%{time}{yyyy-MM-dd, HH:mm:ss.zzz} [%{type:-7}] %{category}: %{message}\n");
    QString filePath;
};

Choices& choices() {
    static Choices instance;
    return instance;
}

}  // namespace

void LogManager::setLogFormat(const QString& format) {
    const std::lock_guard<std::mutex> lock(choices().mutex);
    choices().format = format;
}

QString LogManager::logFormat() {
    const std::lock_guard<std::mutex> lock(choices().mutex);
    return choices().format;
}

void LogManager::registerConsoleAppender() {
    Logger::globalInstance()->registerAppender(std::make_unique<ConsoleAppender>());
}

QString LogManager::getlogFilePath() {
    const std::lock_guard<std::mutex> lock(choices().mutex);
    if (!choices().filePath.isEmpty())
        return choices().filePath;
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + '/' +
           QCoreApplication::applicationName() + ".log";
}

void LogManager::setlogFilePath(const QString& path) {
    const std::lock_guard<std::mutex> lock(choices().mutex);
    choices().filePath = path;
}

}  // namespace Fenk
