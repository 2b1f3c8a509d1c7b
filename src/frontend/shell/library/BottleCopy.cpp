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
constexpr int LongestName = 80;

QString joined(const QJsonArray& names) {
    QStringList texts;
    for (const QJsonValue& name : names) {
        if (texts.size() == MostNames)
            texts.last() = QChar(0x2026);
        else
            texts += name.toString().left(LongestName);
    }
    return QLocale().createSeparatedList(texts);
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

BottleCopy* BottleCopy::addPortable(const QString& path) {
    auto* copy = new BottleCopy(Kind::Portable,
                                path.section('/', -1, -1, QString::SectionSkipEmpty).left(LongestName), path);
    BottleBackups::instance()->importPortable(path, copy,
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
    m_isCancelled = true;
    BottleBackups::instance()->cancel(m_file);
}

void BottleCopy::finish(const BusResult& result) {
    if (!result.ok || !result.object()["ok"].toBool())
        qWarning().noquote() << "no copy of a bottle:" << m_file << result.errorMessage << result.text;
    Outcome outcome = outcomeOf(result);
    outcome.result = result.object();
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

Outcome BottleCopy::failureOf(const BusResult& result) const {
    const QJsonObject object = result.object();
    const QString failure = m_kind == Kind::BackUp    ? tr("%1 could not be backed up.").arg(m_name)
                            : m_kind == Kind::Restore ? tr("The backup could not be restored.")
                                                      : tr("%1 could not be added.").arg(m_name);
    if (object["reasons"][0].toObject()["code"] == "cancelled")
        return m_isCancelled ? Outcome{Outcome::End::Cancelled, {}, {}}
                             : Outcome{Outcome::End::Failed, failure,
                                       tr("The service stopped the work before its end.")};
    if (object.contains("busy"))
        return {Outcome::End::Busy,
                tr("%1 cannot be backed up while programs run in its container.").arg(m_name),
                tr("Close them and try again: %1").arg(joined(object["busy"].toArray()))};
    const bool hasChanged = object["reasons"][0].toObject()["code"] == "bottle-changed";
    return {hasChanged ? Outcome::End::Changed : Outcome::End::Failed, failure,
            result.ok ? ServiceErrorText::of(object) : result.errorText()};
}

Outcome BottleCopy::outcomeOf(const BusResult& result) const {
    const QJsonObject object = result.object();
    if (!result.ok || !object["ok"].toBool())
        return failureOf(result);
    Outcome outcome{Outcome::End::Done, {}, {}};
    const QJsonArray leftOut = object["leftOut"].toArray();
    if (m_kind == Kind::BackUp) {
        outcome.text = tr("%1 is backed up (%2).")
                           .arg(m_name, TextUtils::readableSize(qint64(object["bytes"].toDouble())));
        outcome.note =
            leftOut.isEmpty()
                ? QDir::toNativeSeparators(m_file)
                : tr("Links that lead out of the container are not in the file: %1").arg(joined(leftOut));
    } else if (m_kind == Kind::Portable) {
        outcome.text = tr("%1 is copied.").arg(m_name);
        if (!leftOut.isEmpty())
            outcome.note = tr("Not copied, since they lead out of the folder or are no ordinary files: %1")
                               .arg(joined(leftOut));
    } else {
        outcome.text = tr("Back in the library: %1").arg(m_name);
        QStringList notes;
        if (object["otherWine"].toBool())
            notes += tr("This machine has another Wine; the files of Windows were updated to it.");
        const QJsonArray variables = object["variables"].toArray();
        if (!variables.isEmpty())
            notes +=
                tr("Variables that could act on this machine were not taken over: %1").arg(joined(variables));
        outcome.note = notes.join("\n\n");
    }
    return outcome;
}
