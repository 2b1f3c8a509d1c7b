#include "launch/repair/Diagnosis.h"

#include <QCoreApplication>
#include <algorithm>

#include "backend/TextUtils.h"
#include "launch/repair/ComponentTitle.h"
#include "launch/repair/FailureFacts.h"
#include "launch/repair/FailureReason.h"

namespace {

constexpr int ImmediateExitSeconds = 10;  // a shorter run counts as "at once"
constexpr qint64 TypicalMonoBytes = 45000000;
constexpr int FirstMsiError = 1600;

class Diagnostician {
    Q_DECLARE_TR_FUNCTIONS(Diagnosis)

public:
    explicit Diagnostician(const FailureFacts& facts) : m_facts(facts), m_sign(chosenSign()) {}

    Diagnosis diagnose() const {
        const RepairAction repair = action();
        if (!m_facts.launcherReason.isEmpty())
            return {m_facts.launcherReason, repair};
        const FailureReason found = m_sign ? FailureReason::of(*m_sign) : unknown();
        // The most frequent failure has a text of its own.
        if (repair == RepairAction::InstallComponents && isOf(Failure::MissingMono) &&
            m_facts.components == QStringList("mono9"))
            return {tr("It needs .NET; Repair installs Wine Mono (about %1).").arg(monoSize()), repair};
        QString next = whatRepairDoes(repair, found);
        if (next.isEmpty())
            next = found.advice;
        if (next.isEmpty())
            next = tr("View Logs shows what Wine said.");
        return {joined(found.reason, next), repair};
    }

private:
    bool isOf(Failure failure) const { return m_sign && m_sign->failure == failure; }

    /// The first sign, or a later one of the same failure that Repair can fix.
    const FailureSign* chosenSign() const {
        const FailureSign* first = m_facts.signs.isEmpty() ? nullptr : &m_facts.signs.first();
        for (const FailureSign& sign : m_facts.signs) {
            if (sign.failure == first->failure && m_facts.components.contains(sign.component))
                return &sign;
        }
        return first;
    }

    RepairAction action() const {
        const auto can = [this](RepairAction action) { return m_facts.possible.contains(action); };
        const auto other = std::find_if(m_facts.possible.cbegin(), m_facts.possible.cend(), isOtherRepair);
        const bool prefersOther =
            !m_facts.launcherReason.isEmpty() || isOf(Failure::DamagedBottle) || isOf(Failure::Needs32Bit);
        if (prefersOther && other != m_facts.possible.cend())
            return *other;
        if (!m_facts.launcherReason.isEmpty())
            return RepairAction::None;
        if (!m_facts.components.isEmpty())
            return RepairAction::InstallComponents;
        if (!m_facts.fonts.isEmpty())
            return RepairAction::InstallFonts;
        return can(RepairAction::SwitchToStaging) ? RepairAction::SwitchToStaging : RepairAction::None;
    }

    /// The reason if the log has no known sign.
    FailureReason unknown() const {
        if (!m_facts.components.isEmpty())
            return {tr("It needs %1.").arg(titles()), {}};
        if (m_facts.crashed)
            return FailureReason::of({Failure::Crash, {}, {}});
        if (!m_facts.fonts.isEmpty())
            return {tr("It looks for fonts that are missing (%1).").arg(m_facts.fonts.mid(0, 3).join(", ")),
                    {}};
        if (m_facts.isSilent)
            return FailureReason::of({Failure::Hang, {}, {}});
        if (m_facts.windowSeen)
            return {tr("It ended, and the log does not say why."), {}};
        if (m_facts.isPackage && m_facts.isExitCodeKnown && m_facts.exitCode >= FirstMsiError % 256)
            return FailureReason::of(
                {Failure::Msi, QString::number(m_facts.exitCode - FirstMsiError % 256 + FirstMsiError), {}});
        if (!m_facts.isExitCodeKnown)
            return {tr("It ended without showing a window."), {}};
        const QString text = m_facts.seconds < ImmediateExitSeconds
                                 ? tr("It ended at once without showing a window (exit code %1).")
                                 : tr("It ended without showing a window (exit code %1).");
        return {text.arg(m_facts.exitCode), {}};
    }

    QString monoSize() const {
        const qint64 bytes = m_facts.downloadBytes > 0 ? m_facts.downloadBytes : TypicalMonoBytes;
        return TextUtils::readableSize(bytes, 0);
    }

    QString titles() const {
        QStringList titles;
        for (const QString& component : m_facts.components.mid(0, 3))
            titles << componentTitle(component);
        titles.removeDuplicates();
        return titles.join(", ");
    }

    QString whatRepairDoes(RepairAction action, const FailureReason& found) const {
        switch (action) {
            case RepairAction::InstallComponents:
                if (!m_sign ? m_facts.components.size() == 1
                            : m_facts.components.contains(m_sign->component) &&
                                  !isOf(Failure::UnimplementedFunction) && !isOf(Failure::MissingDatabase))
                    return tr("Repair installs it.");
                return tr("Repair installs %1.").arg(titles());
            case RepairAction::InstallFonts:
                return m_sign || m_facts.crashed ? tr("Repair installs the fonts that it misses.")
                                                 : tr("Repair installs them.");
            case RepairAction::SwitchToStaging:
                return found.advice.isEmpty() || found.mayRunOnOtherWine
                           ? tr("Repair tries another version of Wine.")
                           : QString();
            case RepairAction::InstallWow64Runner:
                return tr("Repair installs a Wine that can run it.");
            case RepairAction::RenewBottle:
                return tr("Repair renews the files of Windows and keeps your own.");
            case RepairAction::LaunchAgain:
                return tr("Repair starts it again.");
            case RepairAction::None:
                break;
        }
        if (m_sign && m_facts.failedComponents.contains(m_sign->component))
            return tr("%1 could not be installed.").arg(componentTitle(m_sign->component));
        if (m_sign && !m_sign->component.isEmpty() && m_facts.triedComponents.contains(m_sign->component))
            return tr("A repair with %1 did not help.").arg(componentTitle(m_sign->component));
        return {};
    }

    static QString joined(const QString& first, const QString& second) {
        //: two sentences, one after the other
        return tr("%1 %2").arg(first, second);
    }

    const FailureFacts& m_facts;
    const FailureSign* m_sign;
};

}  // namespace

Diagnosis Diagnosis::of(const FailureFacts& facts) {
    return Diagnostician(facts).diagnose();
}
