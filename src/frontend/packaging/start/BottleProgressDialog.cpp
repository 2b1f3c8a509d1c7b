#include "packaging/start/BottleProgressDialog.h"

#include <QProgressBar>
#include <QVBoxLayout>
#include <cmath>

#include "fenk/controls/Label.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

namespace {

constexpr int Width = 460;
constexpr int Whole = 100;

QString messageOf(BottleProgressDialog::Work work) {
    return work == BottleProgressDialog::Work::Make
               ? BottleProgressDialog::tr("The program is being set up for its first start.")
               : BottleProgressDialog::tr("The program is being updated. Your files and settings stay.");
}

}  // namespace

BottleProgressDialog::BottleProgressDialog(const QString& program, Work work, QWidget* parent)
    : Dialog(program, messageOf(work), parent),
      m_bar(new QProgressBar),
      m_percent(new Label(Label::Secondary)) {
    setObjectName("bottle_progress_dialog");
    setAccessibleName("bottle_progress_dialog");
    setIcon(Theme::icon("cellarix"));
    setFixedWidth(Width);
    m_bar->setObjectName("bottle_progressbar");
    m_bar->setAccessibleName("bottle_progressbar");
    m_bar->setRange(0, Whole);
    m_bar->setTextVisible(false);
    m_percent->setAlignment(Qt::AlignCenter);
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, Tokens::Space8, 0, 0);
    layout->setSpacing(Tokens::Space8);
    layout->addWidget(m_bar);
    layout->addWidget(m_percent);
    addContent(content);
    addButton(tr("Cancel"));
    setProgress(0);
}

void BottleProgressDialog::setProgress(double percent) {
    const double known = std::isnan(percent) ? 0 : qBound(0.0, percent, double(Whole));
    m_bar->setValue(qMax(m_bar->value(), static_cast<int>(known)));
    m_percent->setText(tr("%1%").arg(m_bar->value()));
}
