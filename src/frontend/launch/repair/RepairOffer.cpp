#include "launch/repair/RepairOffer.h"

#include <QJsonArray>
#include <QJsonObject>

#include "backend/ServiceErrorText.h"
#include "backend/TextUtils.h"
#include "launch/repair/ComponentTitle.h"

namespace {

constexpr int MaximumToolTipLines = 12;

OfferedFile fileOf(const QJsonObject& described) {
    OfferedFile file;
    file.name = described["name"].toString();
    file.size = qint64(described["size"].toDouble(-1));
    file.isCached = described["cached"].toBool();
    file.source = described["host"].toString();
    if (file.source.isEmpty())
        file.source = described["address"].toString();
    return file;
}

QString textOf(const OfferedFile& file) {
    const QString size = TextUtils::readableSize(file.size);
    if (file.isCached)
        return RepairOffer::tr("%1 (%2) has been fetched already.").arg(file.name, size);
    if (file.source.isEmpty())
        return RepairOffer::tr("It is not known where %1 can be had.").arg(file.name);
    return file.size > 0
               ? RepairOffer::tr("%1 (%2) comes from %3.").arg(file.name, size, file.source)
               : RepairOffer::tr("%1 comes from %2; its size is not known yet.").arg(file.name, file.source);
}

void addLines(const OfferedComponent& component, QVector<RepairOffer::Line>* lines) {
    if (!component.isAvailable) {
        lines->append({RepairOffer::tr("%1 cannot be installed.").arg(component.title), true});
        if (!component.reason.isEmpty())
            lines->append({component.reason, true});
        return;
    }
    lines->append({RepairOffer::tr("Repair installs %1.").arg(component.title), false});
    if (!component.needs.isEmpty())
        lines->append({RepairOffer::tr("%1 is installed first.").arg(component.needs.join(", ")), false});
    for (const OfferedFile& file : component.files)
        lines->append({textOf(file), false});
    if (!component.winetricks.isEmpty())
        lines->append(
            {RepairOffer::tr("The tool winetricks installs it (as \"%1\") and fetches what it needs.")
                 .arg(component.winetricks),
             false});
}

}  // namespace

QVector<OfferedComponent> OfferedComponent::read(const QJsonArray& described) {
    QVector<OfferedComponent> result;
    for (const QJsonValue& value : described) {
        const QJsonObject row = value.toObject();
        OfferedComponent component;
        component.name = row["name"].toString();
        if (component.name.isEmpty())
            continue;
        component.title = componentTitle(component.name);
        // Use the catalogue's title if there is no title of ours.
        if (component.title == component.name && !row["title"].toString().isEmpty())
            component.title = row["title"].toString();
        component.isAvailable = row["available"].toBool();
        component.reason = ServiceErrorText::of(row);
        component.needs = row["needs"].toVariant().toStringList();
        component.winetricks = row["winetricks"].toString();
        for (const QJsonValue& file : row["files"].toArray())
            component.files += fileOf(file.toObject());
        result += component;
    }
    return result;
}

qint64 OfferedComponent::bytes(const QVector<OfferedComponent>& components) {
    qint64 sum = 0;
    for (const OfferedComponent& component : components) {
        for (const OfferedFile& file : component.files) {
            if (file.size <= 0)
                return 0;
            sum += file.size;
        }
    }
    return sum;
}

QString OfferedComponent::sizeText() const {
    qint64 known = 0;
    bool isWhole = winetricks.isEmpty();
    for (const OfferedFile& file : files) {
        known += qMax<qint64>(0, file.size);
        isWhole = isWhole && file.size > 0;
    }
    const QString text = TextUtils::readableSize(known);
    if (isWhole)
        return known > 0 ? text : QString();
    return known > 0 ? tr("at least %1").arg(text) : tr("size unknown");
}

QVector<RepairOffer::Line> RepairOffer::lines() const {
    QVector<Line> lines;
    for (const OfferedComponent& component : components)
        addLines(component, &lines);
    if (!fonts.isEmpty())
        lines.append(
            {tr("Repair puts fonts of this system in the place of %1.").arg(fonts.join(", ")), false});
    if (action == RepairAction::RenewBottle)
        lines.append({tr("Repair renews Wine's own files in the bottle. Programs and files stay."), false});
    else if (action == RepairAction::LaunchAgain)
        lines.append({tr("Repair starts the program once more."), false});
    return lines;
}

QString RepairOffer::toolTip() const {
    QStringList texts;
    for (const Line& line : lines())
        texts += line.text;
    if (texts.size() > MaximumToolTipLines)
        texts = texts.mid(0, MaximumToolTipLines) + QStringList(QString(QChar(0x2026)));
    return texts.join('\n');
}
