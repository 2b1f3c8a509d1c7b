#include "launch/banner/BannerDescription.h"

using namespace Fenk;

namespace {

constexpr int ReasonMaxWidth = 480;
constexpr int FewestReasonLines = 2;

}  // namespace

BannerDescription::BannerDescription(QWidget* parent) : Label(Label::Small, parent) {
    setElided(true);
    setAlignment(Qt::AlignCenter);
}

void BannerDescription::showText(const QString& text) {
    m_shown = text;
    QStringList lines;
    for (const QString& line : m_isReason ? text.split('\n') : QStringList{text})
        lines += line.simplified();
    setText(lines.join('\n').trimmed());
}

void BannerDescription::setReason(bool isReason) {
    m_isReason = isReason;
    setTextInteractionFlags(isReason ? Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard
                                     : Qt::NoTextInteraction);
    showText(m_shown);
    setTextRole(isReason ? Theme::Text : Theme::Secondary);
    limitLines(isReason ? 0 : 1);
}

void BannerDescription::limitLines(int lines) {
    setReadingWidth(lines == 0 ? ReasonMaxWidth : 0);
    setElidedAfter(qMax(1, lines));
    setElided(lines > 0);
}

int BannerDescription::linesWithout(int pixels) const {
    const int lines = (heightForWidth(ReasonMaxWidth) - pixels) / fontMetrics().lineSpacing();
    return qMax(FewestReasonLines, lines);
}
