#include "shell/library/BottleCopy.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QMetaMethod>

#include "backend/BottleBackups.h"
#include "backend/DesktopUtils.h"
#include "backend/InBackground.h"
#include "backend/ServiceErrorText.h"
#include "backend/TextUtils.h"

namespace {

using Outcome = BottleCopy::Outcome;

constexpr int MostNames = 5;

QString joined(const QJsonArray& names) {
    QStringList texts;
    for (const QJsonValue& name : names) {
        if (texts.size() == MostNames)
            texts.last() = QChar(0x2026);
        else
            texts += name.toString();
    }
    return QLocale().createSeparatedList(texts);
}

Outcome failureOf(BottleCopy::Kind kind, const QString& name, const BusResult& result) {
    const QJsonObject object = result.object();
    if (object["reasons"][0].toObject()["code"] == "cancelled")
        return {Outcome::End::Cancelled, {}, {}};
    if (object.contains("busy"))
        return {Outcome::End::Busy,
                BottleCopy::tr("%1 cannot be backed up while programs run in its container.").arg(name),
                BottleCopy::tr("Close them and try again: %1").arg(joined(object["busy"].toArray()))};
    return {Outcome::End::Failed,
            kind == BottleCopy::Kind::BackUp ? BottleCopy::tr("%1 could not be backed up.").arg(name)
                                             : BottleCopy::tr("The backup could not be restored."),
            result.ok ? ServiceErrorText::of(object) : result.errorText()};
}

}  // namespace

BottleCopy* BottleCopy::backUp(const Program& program, const QString& file) {
    auto* copy = new BottleCopy(Kind::BackUp, program.name, file);
    BottleBackups::instance()->exportBottle(program.ref.bottle, file, copy,
                                            [copy](const BusResult& result) { copy->finish(result); });
    return copy;
}

BottleCopy* BottleCopy::restore(const QString& name, const QString& file) {
    auto* copy = new BottleCopy(Kind::Restore, name, file);
    BottleBackups::instance()->importBottle(file, copy,
                                            [copy](const BusResult& result) { copy->finish(result); });
    return copy;
}

BottleCopy::BottleCopy(Kind kind, const QString& name, const QString& file)
    : QObject(qApp), m_kind(kind), m_name(name), m_file(file), m_hold(PendingWork::instance()->hold()) {
    connect(BottleBackups::instance(), &BottleBackups::copyProgress, this,
            [this](const QString& of, qlonglong done, qlonglong total) {
                if (of == m_file)
                    Q_EMIT progress(done, total);
            });
}

void BottleCopy::cancel() {
    BottleBackups::instance()->cancel(m_file);
}

void BottleCopy::finish(const BusResult& result) {
    if (!result.ok || !result.object()["ok"].toBool())
        qWarning().noquote() << "no copy of a bottle:" << m_file << result.errorMessage << result.text;
    const Outcome outcome = outcomeOf(m_kind, m_name, m_file, result);
    if (!isSignalConnected(QMetaMethod::fromSignal(&BottleCopy::finished)))
        notify(outcome);
    m_hold.reset();
    deleteLater();
    Q_EMIT finished(outcome);
}

void BottleCopy::notify(const Outcome& outcome) {
    if (outcome.end == Outcome::End::Cancelled)
        return;
    inBackground(
        qApp,
        [outcome] {
            return DesktopUtils::notify(outcome.text, DesktopUtils::notificationText(outcome.note));
        },
        [hold = PendingWork::instance()->hold()](bool) {});
}

Outcome BottleCopy::outcomeOf(Kind kind, const QString& name, const QString& file, const BusResult& result) {
    const QJsonObject object = result.object();
    if (!result.ok || !object["ok"].toBool())
        return failureOf(kind, name, result);
    Outcome outcome{Outcome::End::Done, {}, {}};
    const QJsonArray leftOut = object["leftOut"].toArray();
    if (kind == Kind::BackUp) {
        outcome.text = tr("%1 is backed up (%2).")
                           .arg(name, TextUtils::readableSize(qint64(object["bytes"].toDouble())));
        outcome.note =
            leftOut.isEmpty()
                ? QDir::toNativeSeparators(file)
                : tr("Links that lead out of the container are not in the file: %1").arg(joined(leftOut));
    } else {
        outcome.text = tr("Back in the library: %1").arg(name);
        if (object["otherWine"].toBool())
            outcome.note = tr("This machine has another Wine; the files of Windows were updated to it.");
    }
    return outcome;
}
