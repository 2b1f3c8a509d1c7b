#include "shell/requests/AddItem.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>
#include <QUrl>

#include "fenk/system/RegularFile.h"
#include "launch/inspection/OpenRefusal.h"
#include "launch/inspection/ProgramHeader.h"
#include "shell/requests/AddInputs.h"
#include "shell/requests/LinkTarget.h"
#include "shell/requests/PortableCheck.h"
#include "store/install/ManifestFacts.h"

using Kind = AddItem::Kind;

namespace {

constexpr int LongestShown = 80;

struct Item {
    Q_DECLARE_TR_FUNCTIONS(AddItem)
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

QString textOf(const OpenRefusal& refusal) {
    return refusal.advice.isEmpty() ? refusal.reason : refusal.reason + '\n' + refusal.advice;
}

QString programFault(const QString& path) {
    if (const OpenRefusal refusal = OpenRefusal::of(path))
        return textOf(refusal);
    const QString suffix = QFileInfo(path).suffix().toLower();
    const ProgramHeader header = ProgramHeader::read(path);
    const bool isOfItsKind = suffix == QLatin1String("bat") ||
                             (suffix == QLatin1String("msi") ? header.isPackage : header.isProgram());
    return isOfItsKind ? QString() : Item::tr("Its content is not what its name says.");
}

QString readManifest(AddItem* item) {
    QFile source;
    if (!Fenk::RegularFile::open(source, item->path, Fenk::RegularFile::Links::Followed))
        return textOf(OpenRefusal::ofOther(item->path));
    item->manifest = source.read(ManifestFacts::MaximumBytes + 1);
    QString error;
    if (ManifestFacts::read(item->manifest, &error))
        return {};
    qWarning().noquote() << item->path << "is no manifest:" << error;
    return Item::tr("It is no manifest of an application: it needs at least a Name and a DebInfo.");
}

void followLink(AddItem* item) {
    const LinkTarget target = LinkTarget::of(item->path);
    item->windowsPath = target.windowsPath;
    item->bottle = target.bottle;
    item->kind = target.windowsPath.isEmpty()     ? Kind::NoFileLink
                 : target.file.isEmpty()          ? Kind::DeadLink
                 : QFileInfo(target.file).isDir() ? Kind::Folder
                                                  : kindOfFile(target.file);
    if (!target.file.isEmpty())
        item->path = target.file;
}

QString faultOf(AddItem* item, const std::atomic_bool& isCancelled) {
    switch (item->kind) {
        case Kind::Address:
            break;
        case Kind::OtherAddress:
            return Item::tr(
                "Only files of this computer and addresses that begin with http:// or https:// "
                "can be added.");
        case Kind::Program:
            return programFault(item->path);
        case Kind::Manifest:
            return readManifest(item);
        case Kind::Folder:
            return PortableCheck::folder(item->path, isCancelled);
        case Kind::Zip:
            return PortableCheck::archive(item->path, isCancelled);
        case Kind::DeadLink:
            return Item::tr("It is a shortcut to %1, which is not on this computer.")
                .arg(item->windowsPath.left(LongestShown));
        case Kind::NoFileLink:
            return Item::tr("It is a shortcut, but it does not lead to a program.");
        case Kind::Missing:
        case Kind::Other:
            return textOf(OpenRefusal::ofOther(item->path));
    }
    return {};
}

Kind kindOf(const QString& input, AddItem* item) {
    if (!AddInputs::isPath(input))
        return AddInputs::isAddress(input) ? Kind::Address : Kind::OtherAddress;
    const QFileInfo info(input);
    if (!info.exists())
        return Kind::Missing;
    if (info.isDir())
        return Kind::Folder;
    if (info.suffix().compare(QLatin1String("lnk"), Qt::CaseInsensitive) != 0)
        return kindOfFile(input);
    followLink(item);
    return item->kind;
}

}  // namespace

AddItem AddItem::read(const QString& input, const std::atomic_bool& isCancelled) {
    AddItem item;
    item.path = input;
    const QFileInfo info(input);
    const QString name = AddInputs::isPath(input) ? info.fileName() : QUrl(input).host();
    item.shown = (name.isEmpty() ? input : name).left(LongestShown);
    item.folder = info.path();
    item.kind = kindOf(input, &item);
    if (!isCancelled)
        item.reason = faultOf(&item, isCancelled);
    if (!item.reason.isEmpty())
        qWarning().noquote() << "cannot add" << AddInputs::logged(input) << item.reason;
    return item;
}
