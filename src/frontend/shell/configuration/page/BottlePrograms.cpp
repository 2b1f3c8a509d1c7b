#include "shell/configuration/page/BottlePrograms.h"

#include <QDebug>
#include <QFileInfo>

#include "backend/BottleRecord.h"
#include "backend/BottleUtils.h"
#include "backend/BottlesConfig.h"
#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"

BottlePrograms::BottlePrograms(const QString& bottle, QObject* parent) : QObject(parent), m_bottle(bottle) {
    follow();
}

void BottlePrograms::follow() {
    BottlesConfig* service = BottlesConfig::instance();
    const auto read = [this](const QString& bottle, const QString& id) {
        if (bottle == m_bottle)
            readProgram(id);
    };
    connect(service, &BottlesConfig::program_added, this, read);
    connect(service, &BottlesConfig::program_updated, this, read);
    connect(service, &BottlesConfig::program_deleted, this, [this](const QString& bottle, const QString& id) {
        if (bottle == m_bottle)
            onRemoved(id);
    });
}

/// Emits what has changed afterwards.
void BottlePrograms::update(const std::function<void()>& change) {
    const auto currentId = [this] {
        const ProgramEntry* entry = m_list.currentEntry();
        return entry ? entry->id : QString();
    };
    const QString before = currentId();
    change();
    Q_EMIT changed();
    if (currentId() != before)
        Q_EMIT currentChanged();
}

void BottlePrograms::setRecord(const QJsonObject& record) {
    m_path = BottleRecord::path(record);
    update([&] { m_list.setAll(BottleRecord::programs(record)); });
    lookForWanted();
}

void BottlePrograms::readProgram(const QString& id) {
    BottlesConfig::instance()->watchBottle(m_bottle, this, [this, id](const BusResult& result) {
        if (!result.ok) {
            qWarning().noquote() << "cannot read the program" << id << result.errorMessage;
            return;
        }
        const QJsonObject program = BottleRecord::programs(result.object()).value(id).toObject();
        if (program.isEmpty()) {
            qWarning("The program is empty.");
            return;
        }
        update([&] { m_list.put(id, program); });
        lookForWanted();
    });
}

void BottlePrograms::onRemoved(const QString& id) {
    if (m_list.indexOf(id) >= 0)
        update([&] { m_list.remove(id); });
}

void BottlePrograms::select(int index) {
    m_wantedId.clear();
    m_wantedFile.clear();
    update([&] { m_list.select(index); });
}

void BottlePrograms::selectFile(const QString& file) {
    m_wantedFile = file;
    lookForWanted();
}

void BottlePrograms::selectId(const QString& id) {
    m_wantedId = id;
    lookForWanted();
}

void BottlePrograms::lookForWanted() {
    if (!m_wantedId.isEmpty() && m_list.indexOf(m_wantedId) >= 0)
        select(m_list.indexOf(m_wantedId));
    if (m_wantedFile.isEmpty() || m_path.isEmpty())
        return;
    const auto find = [list = m_list, path = m_path, file = m_wantedFile] {
        const int index = list.indexOfFile(path, file);
        return index < 0 ? QString() : list.entries()[index].id;
    };
    inBackground(this, find, [this, file = m_wantedFile](const QString& id) {
        const int index = m_list.indexOf(id);
        if (file == m_wantedFile && index >= 0)
            select(index);
    });
}

bool BottlePrograms::isProgramFile(const QString& file) {
    static const QStringList suffixes{"exe", "msi", "bat"};
    const QFileInfo info(file);
    return info.isFile() && suffixes.contains(info.suffix().toLower());
}

int BottlePrograms::addFiles(const QStringList& files) {
    int count = 0;
    for (const QString& file : files) {
        if (!isProgramFile(file))
            continue;
        ++count;
        const QString name = QFileInfo(file).completeBaseName();
        const auto add = [bottle = m_bottle, name, file] { return BottleUtils::addExe(bottle, name, file); };
        changeServiceAsync(this, add, [this, name](const QString& id) {
            if (id.isEmpty())
                Q_EMIT failed(tr("%1 could not be added. Please try again later.").arg(name));
            else
                readProgram(id);
        });
    }
    return count;
}

void BottlePrograms::addFound(const QJsonObject& record) {
    const auto add = [bottle = m_bottle, record] {
        return BottlesConfig::instance()->updateExternalProgram(bottle, record);
    };
    changeServiceAsync(this, add, [this, record](const BusResult& result) {
        const QString name = ProgramRecord::name(record);
        if (result.ok) {
            readProgram(ProgramRecord::id(record));
            return;
        }
        qWarning().noquote() << "can't add" << name << "to" << m_bottle << result.errorMessage;
        Q_EMIT failed(tr("%1 could not be added: %2").arg(name, result.errorText()));
    });
}

void BottlePrograms::remove(const QString& id) {
    const int index = m_list.indexOf(id);
    if (index < 0) {
        qWarning("Entry not found");
        return;
    }
    const QString name = m_list.entries()[index].name();
    const auto removeIt = [bottle = m_bottle, id] {
        return BottlesConfig::instance()->removeExternalProgram(bottle, id);
    };
    changeServiceAsync(this, removeIt, [this, id, name](const BusResult& result) {
        if (result.ok) {
            onRemoved(id);
            return;
        }
        qWarning().noquote() << "can't remove" << id << "from" << m_bottle << result.errorMessage;
        Q_EMIT failed(tr("%1 could not be deleted: %2").arg(name, result.errorText()));
    });
}
