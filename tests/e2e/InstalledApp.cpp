#include "e2e/InstalledApp.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QStandardPaths>
#include <QVariant>
#include <csignal>

#include "core/base/BuildInfo.h"
#include "core/base/Paths.h"

namespace TestSupport {

namespace {

constexpr int ShownBytes = 4000;

bool runs32Bit() {
    const QString wine = QFileInfo(QStandardPaths::findExecutable("wine")).canonicalFilePath();
    const QDir root(QFileInfo(wine).path() + "/..");
    for (const char* library : {"lib", "lib64", "lib32", "lib/x86_64-linux-gnu", "lib/i386-linux-gnu"}) {
        if (root.exists(QString(library) + "/wine/i386-windows/ntdll.dll"))
            return true;
    }
    return false;
}

}  // namespace

InstalledApp::InstalledApp(const QStringList& arguments, const QStringList& variables) {
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    for (const QString& variable : variables)
        m_process.setVariable(variable.section('=', 0, 0), variable.section('=', 1));
    QObject::connect(&m_process, &QProcess::readyRead, &m_process,
                     [this] { m_log += QString::fromUtf8(m_process.readAll()); });
    m_process.start(executable(), arguments);
    m_process.waitForStarted();
}

int InstalledApp::waitForExit(int timeoutMs) {
    if (!waitUntil([this] { return !isRunning(); }, timeoutMs)) {
        qWarning().noquote() << "does not end:" << m_log.right(ShownBytes);
        return -1;
    }
    m_log += QString::fromUtf8(m_process.readAll());
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

bool InstalledApp::waitForLog(const QString& text, int timeoutMs) {
    return waitUntil([&] { return m_log.contains(text); }, timeoutMs);
}

void InstalledApp::signal(int number) {
    ::kill(pid_t(pid()), number);
}

QString InstalledApp::executable() {
    return Paths::binDir() + "/cellarix";
}

void InstalledApp::acceptAgreement() {
    const QString directory =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/lumora/cellarix";
    QDir().mkpath(directory);
    QFile file(directory + "/settings.conf");
    if (file.open(QIODevice::WriteOnly))
        file.write("[basic]\nupdate_log.version=" + BuildInfo::version().toUtf8() + "\n");
}

QString sample(const QString& name, int bits) {
    if (bits == 32 && !runs32Bit())
        return {};
    const QString path =
        QString(TEST_BINARY_DIR "/tests/programs/%1/%2.exe").arg(bits == 64 ? "x64" : "x86", name);
    return QFileInfo::exists(path) ? path : QString();
}

QString sampleAs(const QString& name, const QString& directory, const QString& fileName, int bits) {
    const QString source = sample(name, bits);
    if (source.isEmpty())
        return {};
    QDir().mkpath(directory);
    const QString target = directory + "/" + fileName;
    QFile::remove(target);
    return QFile::copy(source, target) ? target : QString();
}

QString callBottles(const QString& method, const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        "com.lumora.LumoraWineLauncher", "/com/lumora/Manager/Bottles", "com.lumora.Manager.Bottles", method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus()
        .call(call, QDBus::BlockWithGui, 120000)
        .arguments()
        .value(0)
        .toString();
}

QJsonDocument bottlesJson(const QString& method, const QVariantList& arguments) {
    return QJsonDocument::fromJson(callBottles(method, arguments).toUtf8());
}

QStringList bottleNames() {
    return bottlesJson("list").toVariant().toStringList();
}

QString bottleOf(const QString& program) {
    for (const QString& name : bottleNames()) {
        if (name.startsWith(program))
            return name;
    }
    return {};
}

void addProgram(const QString& bottle, const QString& id, const QString& name, const QString& path,
                const QString& arguments) {
    const QJsonObject program{{"id", id}, {"name", name}, {"path", path}, {"arguments", arguments}};
    callBottles("updateExternalProgram", {bottle, QString::fromUtf8(QJsonDocument(program).toJson())});
}

void killAllWineServers() {
    for (const QString& name : bottleNames())
        callBottles("killWineServer", {name});
}

bool offerSampleLibraries() {
    const QString data =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/lumora-wine-bottles";
    QDir().mkpath(data + "/mirror");
    for (const char* name : {"sqlite3", "vcamp140"}) {
        const QString archive = QString("%1/mirror/%2.tar").arg(data, name);
        const QString directory = TEST_BINARY_DIR "/tests/programs/x64";
        if (!runProcess("tar", {"-C", directory, "-cf", archive, QString(name) + ".dll"}).ok())
            return false;
    }
    const QByteArray files[][2] = {{"/dependency.json", R"({
            "sqlite3": {"recipe": {"steps": [{"extract": "sqlite3.tar", "files": ["sqlite3.dll"]}]}},
            "vcredist2022": {"recipe": {"steps": [{"extract": "vcamp140.tar", "files": ["vcamp140.dll"]},
                                                  {"override": ["vcamp140"], "mode": "native,builtin"}]}}})"},
                                   {"/sources.json", R"({"allow_unverified": true, "mirrors": [")" +
                                                         QFile::encodeName(data) + R"(/mirror"]})"}};
    for (const auto& [name, content] : files) {
        QFile file(data + name);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            return false;
    }
    return true;
}

}  // namespace TestSupport
