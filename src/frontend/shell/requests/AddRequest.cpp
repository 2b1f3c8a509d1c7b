#include "shell/requests/AddRequest.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>
#include <QUrl>
#include <algorithm>

#include "launch/inspection/ProgramHeader.h"
#include "shell/requests/AddInputs.h"
#include "shell/requests/LinkTarget.h"

using Kind = AddItem::Kind;

namespace {

constexpr int MostShown = 5;
constexpr int LongestShown = 80;

struct Request {
    Q_DECLARE_TR_FUNCTIONS(AddRequest)
};

Kind kindOfFile(const QString& path) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("yml"))
        return Kind::Manifest;
    if (suffix == QLatin1String("zip"))
        return Kind::Zip;
    if (suffix == QLatin1String("exe") || suffix == QLatin1String("msi") || suffix == QLatin1String("bat"))
        return Kind::Program;
    const bool isPatch = suffix == QLatin1String("msp");
    return !isPatch && ProgramHeader::read(path).isProgram() ? Kind::Program : Kind::Other;
}

void followLink(AddItem* item) {
    const LinkTarget target = LinkTarget::of(item->path);
    item->windowsPath = target.windowsPath;
    item->bottle = target.bottle;
    item->kind = target.windowsPath.isEmpty() ? Kind::NoFileLink
                 : target.file.isEmpty()      ? Kind::DeadLink
                                              : kindOfFile(target.file);
    item->detail = target.windowsPath;
    if (!target.file.isEmpty())
        item->path = target.file;
}

QString namesOf(const QVector<AddItem>& items) {
    QStringList names;
    for (const AddItem& item : items) {
        if (names.size() == MostShown) {
            names += QString(QChar(0x2026));
            break;
        }
        names += item.shown;
    }
    return QLocale().createSeparatedList(names);
}

AddRequest refused(const QString& text) {
    return {AddRequest::Kind::Refused, {}, text};
}

AddRequest ofOne(const AddItem& item) {
    switch (item.kind) {
        case Kind::Missing:
            return refused(
                Request::tr("%1 is not there. It may have been moved, renamed or deleted.").arg(item.shown));
        case Kind::DeadLink:
            return refused(Request::tr("%1 is a shortcut to %2, which is not on this computer.")
                               .arg(item.shown, item.detail.left(LongestShown)));
        case Kind::NoFileLink:
            return refused(
                Request::tr("%1 is a shortcut, but it does not lead to a program.").arg(item.shown));
        case Kind::Address:
            return {AddRequest::Kind::Address, {item}, {}};
        case Kind::Manifest:
            return {AddRequest::Kind::Manifest, {item}, {}};
        case Kind::Folder:
        case Kind::Zip:
            return {AddRequest::Kind::Portable, {item}, {}};
        case Kind::Program:
        case Kind::Other:
            break;
    }
    return {AddRequest::Kind::Open, {item}, {}};
}

}  // namespace

AddItem AddItem::read(const QString& input) {
    AddItem item;
    item.path = input;
    if (AddInputs::isAddress(input)) {
        item.kind = Kind::Address;
        item.shown = QUrl(input).host();
        return item;
    }
    const QFileInfo info(input);
    item.shown = info.fileName().isEmpty() ? input : info.fileName().left(LongestShown);
    item.folder = info.path();
    if (!info.exists())
        item.kind = Kind::Missing;
    else if (info.isDir())
        item.kind = Kind::Folder;
    else if (info.suffix().compare(QLatin1String("lnk"), Qt::CaseInsensitive) == 0)
        followLink(&item);
    else
        item.kind = kindOfFile(input);
    return item;
}

AddRequest AddRequest::of(const QVector<AddItem>& items) {
    if (items.isEmpty())
        return {};
    if (items.size() == 1)
        return ofOne(items.first());
    QVector<AddItem> programs;
    std::copy_if(items.begin(), items.end(), std::back_inserter(programs),
                 [](const AddItem& item) { return item.kind == AddItem::Kind::Program; });
    const bool isOneFolder = std::all_of(items.begin(), items.end(), [&items](const AddItem& item) {
        return item.kind != AddItem::Kind::Address && item.folder == items.first().folder;
    });
    if (programs.size() == 1 && isOneFolder)
        return {Kind::Open, programs, {}};
    if (programs.size() < items.size())
        return refused(Request::tr("Add one at a time, or only programs: %1").arg(namesOf(items)));
    if (programs.size() > MostPrograms)
        return refused(Request::tr("These are too many programs at once; %1 is the most: %2")
                           .arg(MostPrograms)
                           .arg(namesOf(items)));
    return {Kind::Several, programs, {}};
}
