#include "feedback/client/SuggestionFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDebug>
#include <QDir>
#include <QRegularExpression>
#include <cerrno>
#include <cstring>

#include "core/base/CutText.h"
#include "feedback/client/UploadPlace.h"
#include "fenk/system/OwnedFd.h"

namespace {

constexpr int LongestName = 50;
constexpr int MostFiles = 9;  // of the same name and second

bool makePrivate(const QString& path) {
    if ((::mkdir(QFile::encodeName(path).constData(), 0700) == 0 || errno == EEXIST) &&
        SuggestionFile::isPrivate(path))
        return true;
    qWarning().noquote() << "suggestions cannot be kept in" << path << "as somebody else can write there";
    return false;
}

/// The new file's name in the directory; empty, with a warning, on failure.
QString writeNew(const QString& directory, const QString& name, const QByteArray& bytes) {
    const Fenk::OwnedFd place(
        ::open(QFile::encodeName(directory).constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    for (int number = 1; number <= MostFiles; ++number) {
        const QString fileName = number == 1 ? name : QString("%1-%2").arg(number).arg(name);
        const QByteArray encoded = QFile::encodeName(fileName);
        const Fenk::OwnedFd fd(::openat(place.get(), encoded.constData(),
                                        O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (!fd.isValid() && errno == EEXIST)
            continue;
        QFile file;
        if (fd.isValid() && file.open(fd.get(), QIODevice::WriteOnly) && file.write(bytes) == bytes.size() &&
            file.flush())
            return fileName;
        qWarning().noquote() << "a suggestion cannot be written to" << directory << ::strerror(errno);
        if (fd.isValid())
            ::unlinkat(place.get(), encoded.constData(), 0);
        return {};
    }
    qWarning().noquote() << "a suggestion cannot be written to" << directory << "as" << name;
    return {};
}

}  // namespace

const char SuggestionFile::CommonDirectory[] = "/tmp/.suggestion_file_path";

std::shared_ptr<SuggestionFile> SuggestionFile::write(const QString& common, const QString& name,
                                                      const QString& text) {
    for (const QString& directory : {common, UploadPlace::suggestions()}) {
        const QString file = makePrivate(directory) ? writeNew(directory, name, text.toUtf8()) : QString();
        if (!file.isEmpty())
            return std::shared_ptr<SuggestionFile>(new SuggestionFile(directory, directory + '/' + file));
    }
    return nullptr;
}

SuggestionFile::~SuggestionFile() {
    QFile::remove(m_path);
    ::rmdir(QFile::encodeName(m_directory).constData());  // unless another rating has put something there
}

void SuggestionFile::removeLeftOvers(const QString& common) {
    if (!isPrivate(common))
        return;
    const QDateTime oldest = QDateTime::currentDateTime().addSecs(-UploadPlace::LeftOverSecs);
    for (const QFileInfo& file : QDir(common).entryInfoList({"*_suggestion_*.log"}, QDir::Files)) {
        if (file.lastModified() < oldest && QFile::remove(file.filePath()))
            qInfo().noquote() << "a suggestion that was not sent is removed:" << file.fileName();
    }
    QDir().rmdir(common);
}

/// Nobody else may have made it: they could put a link of the file's name there, or take the file away.
bool SuggestionFile::isPrivate(const QString& directory) {
    struct stat facts = {};
    return ::lstat(QFile::encodeName(directory).constData(), &facts) == 0 && S_ISDIR(facts.st_mode) &&
           facts.st_uid == ::geteuid() && (facts.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

QString SuggestionFile::nameFor(const QString& appName, const QDateTime& time) {
    static const QRegularExpression others("[^\\w .-]", QRegularExpression::UseUnicodePropertiesOption);
    QString name = cutText(QString(appName).remove(others), LongestName).trimmed();
    while (name.startsWith('.'))
        name.remove(0, 1);
    return QString("%1_suggestion_%2.log").arg(name, time.toString("yyyy_MM_dd_hh_mm_ss"));
}
