#include "shell/configuration/page/ColumnSlide.h"

#include "core/base/SettingsStore.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "shell/configuration/page/EntriesColumn.h"

using namespace Fenk;

namespace {

constexpr int PagesWidth = 944;  // the titles of all pages fit in English
constexpr int Height = 700;
constexpr int ToggleDelayMs = 200;
const char ExpandKey[] = "bottles_configview.expand_toolbar.";

}  // namespace

ColumnSlide::ColumnSlide(EntriesColumn* column, QWidget* window)
    : QObject(window), m_column(column), m_window(window) {
    m_delay.setSingleShot(true);
    m_delay.setInterval(ToggleDelayMs);
    connect(&m_delay, &QTimer::timeout, this, [this] { slide(true); });
    connect(column, &EntriesColumn::toggleRequested, this, &ColumnSlide::toggle);
    connect(&m_slide, &QVariantAnimation::valueChanged, this, [this](const QVariant& width) {
        m_column->setFixedWidth(width.toInt());
        m_window->setFixedWidth(PagesWidth + width.toInt());
    });
}

void ColumnSlide::restore() {
    m_isExpanded = settingsStore()->getOption(ExpandKey).toBool();
    slide(false);
}

void ColumnSlide::toggle() {
    m_isExpanded = !m_isExpanded;
    settingsStore()->setOption(ExpandKey, m_isExpanded);
    settingsStore()->sync();
    m_delay.start();
}

void ColumnSlide::slide(bool animated) {
    m_column->setNarrow(!m_isExpanded);
    const int column = m_isExpanded ? EntriesColumn::WideWidth : EntriesColumn::NarrowWidth;
    const int duration = animated ? Theme::instance()->duration(Tokens::MoveMs) : 0;
    m_slide.stop();
    if (duration > 0) {
        m_slide.setDuration(duration);
        m_slide.setEasingCurve(QEasingCurve::OutCubic);
        m_slide.setStartValue(m_column->width());
        m_slide.setEndValue(column);
        m_slide.start();
    } else {
        m_column->setFixedWidth(column);
        m_window->setFixedSize(PagesWidth + column, Height);
    }
}
