#include "shell/properties/ProgramDetails.h"

#include <QDebug>
#include <QFileInfo>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"
#include "backend/TextUtils.h"
#include "backend/WindowsPath.h"
#include "launch/icons/IconFile.h"
#include "programs/AppItemWidgetStateManager.h"
#include "programs/ProgramIcons.h"

using BottleUtils::Change;

namespace {

constexpr int LongestFileName = 40;

QString unixPath(const QString& bottlePath, const QString& path) {
    return WindowsPath::isWindowsPath(path) ? WindowsPath::toUnix(bottlePath, path) : path;
}

/// Short enough for one line of an error text.
QString shortName(const QString& file) {
    const QString name = QFileInfo(file).fileName();
    return name.size() <= LongestFileName
               ? name
               : name.left(LongestFileName / 2) + QChar(0x2026) + name.right(LongestFileName / 2);
}

}  // namespace

ProgramDetails::ProgramDetails(const Program& known)
    : m_program(known), m_shown{known.name, known.icon}, m_stored(m_shown) {
    connect(ProgramSaver::instance(), &ProgramSaver::saved, this,
            [this](const ProgramRef& ref, const ProgramSaver::Save& save) {
                if (ref == m_program.ref)
                    onSaved(save);
            });
}

void ProgramDetails::load() {
    BottlesConfig::instance()->watchBottle(m_program.ref.bottle, this,
                                           [this](const BusResult& result) { onRecord(result); });
}

void ProgramDetails::deleteWhenSaved() {
    m_isLeft = true;
    deleteIfDone();
}

void ProgramDetails::deleteIfDone() {
    if (m_isLeft && m_iconChecks == 0 && m_saves.isEmpty())
        deleteLater();
}

void ProgramDetails::onRecord(const BusResult& result) {
    const auto& [bottle, id] = m_program.ref;
    if (!result.ok) {
        qWarning().noquote() << "no details of" << id << "of" << bottle << result.errorMessage;
        Q_EMIT failed(
            tr("The details of this application cannot be read at the moment. Please try again later."));
        return;
    }
    const QJsonObject programs = BottleRecord::programs(result.object());
    if (!programs.contains(id)) {
        BottleUtils::warnNotInBottle(bottle, id);
        Q_EMIT failed(tr("This application has been removed meanwhile."));
        return;
    }
    const QJsonObject record = programs.value(id).toObject();
    m_program.update(record);
    m_stored = {ProgramRecord::name(record), ProgramRecord::icon(record)};
    m_shown = ProgramSaver::instance()->pending(m_program.ref).value_or(m_stored);
    m_editable = true;
    Q_EMIT changed();
    if (m_program.size.isEmpty())
        measure();
}

/// Records from program signals have no size.
void ProgramDetails::measure() {
    const auto size = [bottle = m_program.ref.bottle, path = m_program.path] {
        const QFileInfo file(unixPath(BottleUtils::bottlePath(bottle), path));
        return file.isFile() ? QString::number(file.size()) : QString();
    };
    callServiceAsync(this, size, [this](const QString& bytes) {
        m_program.size = bytes;
        Q_EMIT changed();
    });
}

void ProgramDetails::useIcon(const QString& file) {
    ++m_iconChecks;
    inBackground(
        this, [file] { return !IconFile::images(file).isEmpty(); },
        [this, file, choice = ++m_iconChoice, hold = PendingWork::instance()->hold()](bool isPicture) {
            --m_iconChecks;
            if (!isPicture) {
                qInfo().noquote() << "not a picture for an icon:" << file;
                const QString errorText =
                    file.endsWith(".svg", Qt::CaseInsensitive)
                        ? tr("The drawing %1 is too large or too intricate for an icon. Please choose "
                             "another picture.")
                        : tr("%1 holds no picture that can serve as an icon. Please choose a picture of at "
                             "most 16 MB and 4096 pixels.");
                reportError(errorText.arg(shortName(file)));
            } else if (choice == m_iconChoice) {
                ProgramIcons::instance()->refresh(file);
                change({m_shown.name, file});
            }
            deleteIfDone();
        });
}

void ProgramDetails::change(const NameAndIcon& values) {
    if (values == m_shown)
        return;
    m_shown = values;
    Q_EMIT changed();
    m_saves += ProgramSaver::instance()->save(m_program.ref, values);
}

void ProgramDetails::onSaved(const ProgramSaver::Save& save) {
    const bool isOwn = m_saves.remove(save.number);
    const auto pending = ProgramSaver::instance()->pending(m_program.ref);
    if (save.change == Change::Done)
        m_stored = save.values;
    // A later save includes the changes of this one.
    m_shown = pending.value_or(m_stored);
    Q_EMIT changed();
    if (isOwn && !pending && save.change != Change::Done)
        reportError(save.change == Change::NoProgram
                        ? tr("This application has been removed meanwhile, so nothing was saved.")
                        : tr("The change could not be saved. Please try again later."));
    deleteIfDone();
}

/// In the dialog, or in the library if the dialog is closed.
void ProgramDetails::reportError(const QString& errorText) {
    if (m_isLeft)
        AppItemWidgetStateManager::instance()->reportFailure(m_program.ref.uuid,
                                                             m_program.name + "\n" + errorText);
    else
        Q_EMIT failed(errorText);
}

void ProgramDetails::openFolder() {
    if (m_isOpeningFolder)
        return;
    m_isOpeningFolder = true;
    const auto find = [bottle = m_program.ref.bottle, path = m_program.path] {
        const QString bottlePath = BottleUtils::bottlePath(bottle);
        return qMakePair(bottlePath, bottlePath.isEmpty() ? QString() : folderOf(bottlePath, path));
    };
    callServiceAsync(this, find, [this](const QPair<QString, QString>& found) {
        m_isOpeningFolder = false;
        if (found.first.isEmpty()) {
            qWarning("bottles path is empty");
            Q_EMIT failed(tr("The container of this application cannot be found."));
        } else if (found.second.isEmpty()) {
            Q_EMIT failed(tr("The folder of this application is no longer there."));
        } else {
            DesktopUtils::openLocal(found.second);
        }
    });
}

QString ProgramDetails::readableSize(const QString& text) {
    bool isNumber = false;
    const qint64 bytes = text.trimmed().toLongLong(&isNumber);
    // In the units of the service, which sends other sizes as texts.
    return isNumber && bytes >= 0 ? TextUtils::readableSize(bytes, 2, QLocale::DataSizeIecFormat)
                                  : text.simplified();
}

QString ProgramDetails::folderOf(const QString& bottlePath, const QString& programPath) {
    const QFileInfo program(unixPath(bottlePath, programPath));
    const QFileInfo folder(program.isAbsolute() ? program.absolutePath() : QString());
    return folder.isDir() ? folder.canonicalFilePath() : QString();
}
