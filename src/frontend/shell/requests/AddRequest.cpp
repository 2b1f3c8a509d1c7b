#include "shell/requests/AddRequest.h"

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>

namespace {

constexpr int MostShown = 5;

struct Request {
    Q_DECLARE_TR_FUNCTIONS(AddRequest)
};

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

AddRequest refused(const QString& text, const QVector<AddItem>& items = {}) {
    return {AddRequest::Kind::Refused, items, text};
}

AddRequest ofOne(const AddItem& item) {
    if (!item.reason.isEmpty())
        return refused(item.reason, {item});
    switch (item.kind) {
        case AddItem::Kind::Address:
            return {AddRequest::Kind::Address, {item}, {}};
        case AddItem::Kind::Manifest:
            return {AddRequest::Kind::Manifest, {item}, {}};
        case AddItem::Kind::Folder:
        case AddItem::Kind::Zip:
            return {AddRequest::Kind::Portable, {item}, {}};
        default:
            return {AddRequest::Kind::Open, {item}, {}};
    }
}

}  // namespace

AddRequest AddRequest::of(const QVector<AddItem>& items) {
    if (items.isEmpty())
        return {};
    if (items.size() == 1)
        return ofOne(items.first());
    QVector<AddItem> programs;
    std::copy_if(items.begin(), items.end(), std::back_inserter(programs),
                 [](const AddItem& item) { return item.kind == AddItem::Kind::Program; });
    const bool isOneFolder = std::all_of(items.begin(), items.end(), [&items](const AddItem& item) {
        return (item.kind == AddItem::Kind::Program || item.kind == AddItem::Kind::Other) &&
               item.folder == items.first().folder;
    });
    if (programs.size() == 1 && isOneFolder)
        return ofOne(programs.first());
    if (programs.size() < items.size())
        return refused(Request::tr("Add one at a time, or only programs: %1").arg(namesOf(items)));
    if (programs.size() > MostPrograms)
        return refused(Request::tr("These are too many programs at once; %1 is the most: %2")
                           .arg(MostPrograms)
                           .arg(namesOf(items)));
    const auto bad = std::find_if(programs.begin(), programs.end(),
                                  [](const AddItem& program) { return !program.reason.isEmpty(); });
    return bad == programs.end() ? AddRequest{Kind::Several, programs, {}} : ofOne(*bad);
}

QString AddRequest::shown() const {
    return namesOf(items);
}
