#include "shell/properties/ProgramDetails.h"

#include <QDebug>
#include <QFileInfo>
#include <QLocale>

#include "backend/BottleRecord.h"
#include "backend/BottlesConfig.h"
#include "backend/DesktopUtils.h"
#include "backend/ProgramRecord.h"
#include "backend/WindowsPath.h"
#include "launch/IconFile.h"
#include "shell/library/InBackground.h"
#include "shell/library/ProgramIcons.h"

using BottleUtils::Change;

namespace {

constexpr int LongestFileName = 40;

QString unixPath(const QString& bottlePath, const QString& path) {
    return WindowsPath::isWindowsPath(path) ? WindowsPath::toUnix(bottlePath, path) : path;
}

/// For a sentence, in whose line it has to fit.
QString shortName(const QString& file) {
    const QString name = QFileInfo(file).fileName();
    return name.size() <= LongestFileName
               ? name
               : name.left(LongestFileName / 2) + QChar(0x2026) + name.right(LongestFileName / 2);
}

/// The last save of any program: the next one waits for it.
QFuture<Change>& lastSave() {
    static QFuture<Change> save;
    return save;
}

}  // namespace

ProgramDetails::ProgramDetails(const Program& known)
    : m_program(known), m_shown{known.name, known.icon}, m_stored(m_shown) {}

void ProgramDetails::load() {
    BottlesConfig::instance()->watchBottle(m_program.ref.bottle, this,
                                           [this](const BusResult& result) { onRecord(result); });
}

void ProgramDetails::leave() {
    m_leaving = true;
    ended();
}

void ProgramDetails::ended() {
    if (m_leaving && m_looks == 0)
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
    m_program.take(record);
    m_shown = m_stored = {ProgramRecord::name(record), ProgramRecord::icon(record)};
    m_editable = true;
    Q_EMIT changed();
    if (m_program.size.isEmpty())
        measure();
}

/// The records of programs that came after the list have no size.
void ProgramDetails::measure() {
    const auto size = [bottle = m_program.ref.bottle, path = m_program.path] {
        const QFileInfo file(unixPath(BottleUtils::bottlePath(bottle), path));
        return file.isFile() ? QString::number(file.size()) : QString();
    };
    askingService(this, size, [this](const QString& bytes) {
        m_program.size = bytes;
        Q_EMIT changed();
    });
}

void ProgramDetails::useIcon(const QString& file) {
    ++m_looks;
    inBackground(
        this, [file] { return !IconFile::images(file).isEmpty(); },
        [this, file, choice = ++m_choice](bool isPicture) {
            --m_looks;
            if (!isPicture) {
                qInfo().noquote() << "not a picture for an icon:" << file;
                Q_EMIT failed(
                    tr("%1 holds no picture that can serve as an icon. Please choose a picture of at most "
                       "16 MB and 4096 pixels.")
                        .arg(shortName(file)));
            } else if (choice == m_choice) {
                ProgramIcons::instance()->refresh(file);
                change({m_shown.name, file});
            }
            ended();
        });
}

void ProgramDetails::change(const Face& face) {
    if (face == m_shown)
        return;
    m_shown = face;
    ++m_saves;
    Q_EMIT changed();
    const auto save = [before = lastSave(), ref = m_program.ref, face]() mutable {
        before.waitForFinished();
        return BottleUtils::setNameAndIcon(ref.bottle, ref.uuid, face.name, face.icon);
    };
    lastSave() = askingService(this, save, [this, face](Change change) { onSaved(face, change); });
}

void ProgramDetails::onSaved(const Face& face, Change change) {
    --m_saves;
    if (change == Change::Done) {
        m_stored = face;
        return;
    }
    if (m_saves > 0)
        return;  // a later one brings all that this one had
    m_shown = m_stored;
    Q_EMIT changed();
    Q_EMIT failed(change == Change::NoProgram
                      ? tr("This application has been removed meanwhile, so nothing was saved.")
                      : tr("The change could not be saved. Please try again later."));
}

void ProgramDetails::openFolder() {
    if (m_opening)
        return;
    m_opening = true;
    const auto find = [bottle = m_program.ref.bottle, path = m_program.path] {
        const QString bottlePath = BottleUtils::bottlePath(bottle);
        return qMakePair(bottlePath, bottlePath.isEmpty() ? QString() : folderOf(bottlePath, path));
    };
    askingService(this, find, [this](const QPair<QString, QString>& found) {
        m_opening = false;
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
    return isNumber && bytes >= 0 ? QLocale().formattedDataSize(bytes) : text.simplified();
}

QString ProgramDetails::folderOf(const QString& bottlePath, const QString& programPath) {
    const QFileInfo program(unixPath(bottlePath, programPath));
    const QFileInfo folder(program.isAbsolute() ? program.absolutePath() : QString());
    return folder.isDir() ? folder.canonicalFilePath() : QString();
}
