#include "e2e/LaunchProbe.h"

#include <QDebug>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStandardPaths>

namespace TestSupport {

LaunchProbe::LaunchProbe(const QStringList& arguments) {
    m_process.setVariable("QT_QPA_PLATFORM", "offscreen");
    m_process.setVariable("LANGUAGE", "en");
    QObject::connect(&m_process, &QProcess::readyRead, &m_process, [this] { read(); });
    m_process.start(TEST_BINARY_DIR "/tools/launch-probe", arguments);
}

void LaunchProbe::read() {
    static const QRegularExpression passing("in \\d+ seconds$|^msg 0 |\\d%$");
    while (m_process.canReadLine()) {
        const QString line = QString::fromUtf8(m_process.readLine()).trimmed().section(' ', 1);
        if (!passing.match(line).hasMatch())
            m_lines += line;
    }
}

bool LaunchProbe::waitFor(const QString& line, int timeoutMs) {
    const int known = m_lines.count(line);
    const bool came =
        known > 0 || waitUntil([&] { return m_lines.contains(line) || !isRunning(); }, timeoutMs);
    if (!m_lines.contains(line))
        qWarning().noquote() << "no" << line << "in" << m_lines.join("\n  ");
    return came && m_lines.contains(line);
}

int LaunchProbe::waitForEnd(int timeoutMs) {
    if (!waitUntil([this] { return !isRunning(); }, timeoutMs)) {
        qWarning().noquote() << "does not end:" << m_lines.join("\n  ");
        return -1;
    }
    read();
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

QString useMirror(const QMap<QString, QByteArray>& recipes) {
    const QString data =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + "/lumora-wine-bottles";
    const QString mirror = data + "/mirror";
    QDir().mkpath(mirror);
    QJsonObject entries;
    for (auto it = recipes.begin(); it != recipes.end(); ++it)
        entries.insert(
            it.key(),
            QJsonObject{{"recipe", QJsonObject{{"steps", QJsonDocument::fromJson(it.value()).array()}}}});
    const QJsonObject sources{{"mirrors", QJsonArray{mirror}}, {"allow_unverified", true}};
    for (const auto& [name, content] :
         {std::pair("dependency.json", entries), std::pair("sources.json", sources)}) {
        QFile file(data + '/' + name);
        if (file.open(QIODevice::WriteOnly))
            file.write(QJsonDocument(content).toJson());
    }
    return mirror;
}

}  // namespace TestSupport
