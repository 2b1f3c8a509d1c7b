#include "launch/repair/Diagnosis.h"

#include <QCoreApplication>

#include "launch/repair/ComponentTitle.h"
#include "launch/repair/FailureFacts.h"

namespace {

class Diagnostician {
    Q_DECLARE_TR_FUNCTIONS(Diagnosis)

public:
    explicit Diagnostician(const FailureFacts& facts) : m_facts(facts) {}

    Diagnosis diagnose() const {
        Diagnosis diagnosis;
        diagnosis.action = action();
        diagnosis.reason = m_facts.launcherReason.isEmpty() ? reason() : m_facts.launcherReason;
        return diagnosis;
    }

private:
    RepairAction action() const {
        if (!m_facts.launcherReason.isEmpty())
            return m_facts.possible.value(0, RepairAction::None);
        if (!m_facts.components.isEmpty())
            return RepairAction::InstallComponents;
        if (!m_facts.fonts.isEmpty())
            return RepairAction::InstallFonts;
        return m_facts.possible.contains(RepairAction::SwitchToStaging) ? RepairAction::SwitchToStaging
                                                                        : RepairAction::None;
    }

    QString reason() const {
        for (const FailureSign& sign : m_facts.signs) {
            if (sign.failure == Failure::MissingDll)
                return missingDll(sign);
        }
        if (m_facts.crashed)
            return tr("It crashed.");
        if (m_facts.isExitCodeKnown)
            return tr("It ended at once without showing a window (exit code %1).").arg(m_facts.exitCode);
        return tr("It ended at once without showing a window.");
    }

    QString missingDll(const FailureSign& sign) const {
        if (m_facts.components.contains(sign.component))
            return tr("It needs %1, which is part of %2. Repair installs it.")
                .arg(sign.detail, componentTitle(sign.component));
        if (!sign.component.isEmpty())
            return tr("It needs %1, which is part of %2.").arg(sign.detail, componentTitle(sign.component));
        return tr("It needs %1, which is missing.").arg(sign.detail);
    }

    const FailureFacts& m_facts;
};

}  // namespace

Diagnosis Diagnosis::of(const FailureFacts& facts) {
    return Diagnostician(facts).diagnose();
}
