#include "core/base/Logging.h"

#include <QDebug>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <memory>

#include "core/base/BuildInfo.h"
#include "core/base/CxbRollingFileAppender.h"
#include "fenk/log/LogManager.h"
#include "fenk/log/Logger.h"

namespace {

constexpr int LogFilesLimit = 5;

QString logFormat() {
    return QStringLiteral("%{time}{yyyy-MM-dd, HH:mm:ss.zzz} [%{type:-7}] %{function}() %{message}\n");
}

QLoggingCategory::CategoryFilter earlierFilter = nullptr;

/// A filter, since levels set on the category itself are lost as soon as someone sets filter rules.
void filterCategory(QLoggingCategory* category) {
    if (earlierFilter)
        earlierFilter(category);
    // By name: the default category may just be under construction.
    if (qstrcmp(category->categoryName(), "default") != 0)
        return;
    category->setEnabled(QtInfoMsg, true);
    category->setEnabled(QtDebugMsg, !BuildInfo::isRelease());
}

void setUpLogging() {
    const QString filePath = Fenk::LogManager::getlogFilePath();
    Fenk::LogManager::setLogFormat(logFormat());
    Fenk::LogManager::registerConsoleAppender();

    auto file = std::make_unique<CxbRollingFileAppender>(filePath);
    file->setFormat(logFormat());
    file->setLogFilesLimit(LogFilesLimit);
    file->setDatePattern(CxbRollingFileAppender::Daily);
    Fenk::Logger::globalInstance()->registerAppender(std::move(file));

    earlierFilter = QLoggingCategory::installFilter(filterCategory);
}

}  // namespace

void initLogging() {
    static const bool once = [] {
        setUpLogging();
        return true;
    }();
    if (once)
        qInfo().noquote().nospace() << "Logs write to: " << Fenk::LogManager::getlogFilePath();
}

QString cleanHomePaths(QString text) {
    const auto unicode = QRegularExpression::UseUnicodePropertiesOption;
    static const QRegularExpression home(QStringLiteral("(/home/[\\w]+)"), unicode);
    static const QRegularExpression wineHome(QStringLiteral("(\\\\)+home(\\\\)+[\\w]+"), unicode);
    if (!text.contains(QLatin1String("home")))
        return text;
    return text.replace(home, QStringLiteral("@home_dir@")).replace(wineHome, QStringLiteral("@home_dir@"));
}
