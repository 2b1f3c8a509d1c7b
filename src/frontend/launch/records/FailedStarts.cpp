#include "launch/records/FailedStarts.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QStandardPaths>

#include "fenk/system/RegularFile.h"

namespace {

constexpr qint64 MaximumBytes = 4 * 1024 * 1024;
constexpr int LongestReason = 1000;
constexpr int MostComponents = 100;

}  // namespace

/// Read on first use: at construction the application's names are not set yet.
QHash<FailedStarts::Key, FailedStart>& FailedStarts::starts() {
    if (m_file.isEmpty()) {
        m_file = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
                 "/data/failed_starts.json";
        read();
    }
    return m_starts;
}

void FailedStarts::read() {
    QFile file;
    if (!QFileInfo::exists(m_file))
        return;
    if (!Fenk::RegularFile::open(file, m_file)) {
        qWarning().noquote() << "cannot read" << m_file;
        return;
    }
    const QJsonArray list = QJsonDocument::fromJson(file.read(MaximumBytes)).array();
    for (const QJsonValue& value : list) {
        const QJsonObject start = value.toObject();
        const FailedStart known{start.value("reason").toString().left(LongestReason),
                                start.value("components").toVariant().toStringList().mid(0, MostComponents)};
        if (!known.reason.isEmpty())
            m_starts.insert({start.value("bottle").toString(), start.value("program").toString()}, known);
    }
}

void FailedStarts::write() const {
    QJsonArray list;
    for (auto start = m_starts.begin(); start != m_starts.end(); ++start)
        list.append(QJsonObject{{"bottle", start.key().first},
                                {"program", start.key().second},
                                {"reason", start->reason},
                                {"components", QJsonArray::fromStringList(start->components)}});
    QDir().mkpath(QFileInfo(m_file).path());
    QSaveFile file(m_file);
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(list).toJson()) < 0 || !file.commit())
        qWarning().noquote() << "cannot write" << m_file << file.errorString();
}

void FailedStarts::mark(const QString& bottle, const QString& uuid, const FailedStart& start) {
    const Key key(bottle, uuid);
    if (start.reason.isEmpty() || starts().value(key) == start)
        return;
    m_starts.insert(key, {start.reason.left(LongestReason), start.components.mid(0, MostComponents)});
    write();
    Q_EMIT changed(bottle, uuid);
}

void FailedStarts::clear(const QString& bottle, const QString& uuid) {
    if (starts().remove({bottle, uuid}) == 0)
        return;
    write();
    Q_EMIT changed(bottle, uuid);
}

void FailedStarts::record(const QString& bottle, const QString& uuid, const FailedStart& start) {
    if (start.reason.isEmpty())
        clear(bottle, uuid);
    else
        mark(bottle, uuid, start);
}

void FailedStarts::clearBottle(const QString& bottle) {
    for (const Key& key : starts().keys()) {
        if (key.first == bottle)
            clear(bottle, key.second);
    }
}

const FailedStart* FailedStarts::find(const QString& bottle, const QString& uuid) {
    const auto start = starts().constFind({bottle, uuid});
    return start == m_starts.constEnd() ? nullptr : &*start;
}
