#include "shell/library/BottleCopyDialog.h"

#include <QAbstractButton>
#include <QProgressBar>

#include "backend/DesktopUtils.h"
#include "backend/TextUtils.h"
#include "fenk/controls/FloatingMessage.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

using Fenk::Theme;
using End = BottleCopy::Outcome::End;

namespace {

constexpr int BarSteps = 1000;
constexpr int LongestName = 40;
constexpr int MessageMs = 6000;

QString titleOf(BottleCopy::Kind kind) {
    switch (kind) {
        case BottleCopy::Kind::BackUp:
            return BottleCopyDialog::tr("Backing Up %1");
        case BottleCopy::Kind::Restore:
            return BottleCopyDialog::tr("Restoring %1");
        case BottleCopy::Kind::Portable:
            break;
    }
    return BottleCopyDialog::tr("Adding %1");
}

QString shortened(const QString& name) {
    return name.size() <= LongestName ? name : name.left(LongestName) + QChar(0x2026);
}

}  // namespace

BottleCopyDialog::BottleCopyDialog(BottleCopy* copy, QWidget* over)
    : Dialog(over),
      m_copy(copy),
      m_file(copy->file()),
      m_bar(new QProgressBar),
      m_text(new Fenk::Label(tr("Preparing"), Fenk::Label::Small)),
      m_isBackUp(copy->kind() == BottleCopy::Kind::BackUp),
      m_isPortable(copy->kind() == BottleCopy::Kind::Portable) {
    setObjectName("bottle_copy_dialog");
    setFixedWidth(Fenk::Tokens::DialogMaxWidth - 2 * Fenk::Tokens::Space32);
    setTitle(titleOf(copy->kind()).arg(shortened(copy->name())));
    m_bar->setObjectName("copy_bar");
    m_bar->setAccessibleName(title());
    m_bar->setTextVisible(false);
    m_bar->setRange(0, 0);
    m_text->setObjectName("copy_text");
    m_text->setAlignment(Qt::AlignCenter);
    m_text->setWordWrap(true);
    addContent(m_bar);
    addContent(m_text);
    addButtons({tr("Cancel"), tr("Go On in Background")});
    setOnButtonClickedClose(false);
    connect(this, &Dialog::buttonClicked, this, &BottleCopyDialog::onButton);
    connect(copy, &BottleCopy::progress, this, &BottleCopyDialog::showProgress);
    connect(copy, &BottleCopy::finished, this, &BottleCopyDialog::showOutcome);
    connect(this, &QDialog::finished, this, [this] {
        if (m_hasEnded)
            deleteLater();
    });
}

void BottleCopyDialog::showProgress(qint64 done, qint64 total) {
    if (m_hasEnded || m_isCancelling || total <= 0)
        return;
    m_bar->setRange(0, BarSteps);
    m_bar->setValue(int(double(done) / double(total) * BarSteps));
    m_text->setText(done >= total
                        ? tr("Finishing")
                        : tr("%1 of %2").arg(TextUtils::readableSize(done), TextUtils::readableSize(total)));
}

void BottleCopyDialog::showOutcome(const BottleCopy::Outcome& outcome) {
    m_hasEnded = true;
    if (m_isPortable && outcome.end == End::Done) {
        if (m_isCancelling) {
            done(0);
            return;
        }
        // The choice of its programs follows, from whoever has started the copy.
        m_bar->setRange(0, 0);
        m_text->setText(tr("Looking at the programs"));
        clearButtons();
        addButton(tr("Cancel"));
        return;
    }
    if (!parentWidget()->window()->isVisible()) {
        BottleCopy::notify(outcome);
        deleteLater();
        return;
    }
    if (outcome.end == End::Cancelled || (outcome.end == End::Done && !isVisible())) {
        if (outcome.end == End::Done)
            Fenk::FloatingMessage::show(parentWidget(), Theme::icon("fenk-success"), outcome.text, MessageMs);
        done(-1);
        deleteLater();
        return;
    }
    setTitle(outcome.text);
    m_bar->hide();
    m_text->setText(outcome.note);
    m_text->setVisible(!outcome.note.isEmpty());
    m_canRepeat = outcome.end == End::Busy || outcome.end == End::Changed;
    clearButtons();
    addButton(tr("Close"), !m_canRepeat);
    if (m_canRepeat)
        addButton(tr("Try Again"), true, ButtonRecommend);
    else if (outcome.end == End::Done && m_isBackUp)
        addButton(tr("Show File"));
    if (!isVisible())
        open();
}

void BottleCopyDialog::onButton(int index) {
    if (!m_hasEnded && index == 0 && m_copy) {
        // It closes when the service has undone its work.
        m_isCancelling = true;
        button(0)->setEnabled(false);
        m_text->setText(tr("Cancelling"));
        m_copy->cancel();
        return;
    }
    if (m_hasEnded && index == 1 && m_canRepeat)
        Q_EMIT repeatRequested();
    else if (m_hasEnded && index == 1)
        DesktopUtils::showInFileManager(m_file);
    done(index);
}
