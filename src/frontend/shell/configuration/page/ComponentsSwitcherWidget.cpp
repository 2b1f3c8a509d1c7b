#include "shell/configuration/page/ComponentsSwitcherWidget.h"

#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QProgressBar>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/Spinner.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

namespace {

constexpr int Width = 280;
enum Page { ChoicePage, TipsPage, SetupPage };

}  // namespace

ComponentsSwitcherWidget::ComponentsSwitcherWidget(QComboBox* combo, QWidget* parent)
    : QStackedWidget(parent), m_combo(combo) {
    setFixedWidth(Width);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_combo->setObjectName("component_combobox");
    addWidget(m_combo);
    addWidget(makeTipsView());
    addWidget(makeSetupView());
    setFixedHeight(Tokens::ControlHeight);
    setFocusProxy(m_combo);
    connect(m_combo, qOverload<int>(&QComboBox::activated), this,
            [this](int index) { Q_EMIT chosen(m_combo->itemData(index).toString()); });
}

IconButton* ComponentsSwitcherWidget::makeCloseButton(const QString& objectName) {
    auto* close = new IconButton("fenk-close", tr("Cancel"), nullptr, IconButton::Compact);
    close->setObjectName(objectName);
    connect(close, &QToolButton::clicked, this, &ComponentsSwitcherWidget::left);
    return close;
}

QWidget* ComponentsSwitcherWidget::makeTipsView() {
    auto* view = new QWidget;
    view->setObjectName("component_tips_view");
    m_tips = new Label(tr("downloading..."), Label::Small);
    m_tips->setObjectName("tips_label");
    m_tips->setElided(true);
    m_percent = new Label(Label::Small);
    m_percent->setObjectName("tips_percent");
    m_progress = new QProgressBar;
    m_progress->setObjectName("tips_progressbar");
    m_progress->setTextVisible(false);
    m_close = makeCloseButton("tips_closebtn");
    auto* line = new QHBoxLayout;
    line->setSpacing(Tokens::Space8);
    line->addWidget(m_tips, 1);
    line->addWidget(m_percent);
    auto* words = new QVBoxLayout;
    words->setSpacing(Tokens::Space4);
    words->addLayout(line);
    words->addWidget(m_progress);
    auto* layout = new QHBoxLayout(view);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space8);
    layout->addLayout(words, 1);
    layout->addWidget(m_close);
    return view;
}

QWidget* ComponentsSwitcherWidget::makeSetupView() {
    auto* view = new QWidget;
    view->setObjectName("component_setup_view");
    m_setup = new Label(Label::Small);
    m_setup->setObjectName("setup_label");
    m_setup->setElided(true);
    m_spinner = new Spinner;
    m_spinner->setFixedSize(Tokens::IconSmall, Tokens::IconSmall);
    auto* layout = new QHBoxLayout(view);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Tokens::Space8);
    layout->addWidget(m_spinner);
    layout->addWidget(m_setup, 1);
    layout->addWidget(makeCloseButton("setup_closebtn"));
    return view;
}

void ComponentsSwitcherWidget::setName(const QString& name) {
    m_combo->setAccessibleName(name);
    m_progress->setAccessibleName(name);
}

void ComponentsSwitcherWidget::setOffer(const ComponentOffer& offer, const QString& value) {
    const QSignalBlocker blocker(m_combo);
    if (m_combo->count() == 0 || offer.values != m_offer.values || offer.obstacle != m_offer.obstacle) {
        m_offer = offer;
        m_combo->clear();
        for (const QString& version : offer.values)
            m_combo->addItem(offer.isBare() ? offer.obstacle : ComponentSetup::shown(version), version);
        m_combo->setEnabled(!offer.isBare());
        m_combo->setToolTip(plainToolTip(offer.obstacle));
    }
    m_combo->setCurrentIndex(m_combo->findData(value));
}

void ComponentsSwitcherWidget::setSetup(const ComponentSetup& setup) {
    using Phase = ComponentSetup::Phase;
    const Phase phase = setup.phase();
    const bool isFailed = phase == Phase::Failed;
    m_tips->setText(setup.text());
    m_tips->setTextRole(isFailed ? Theme::Danger : Theme::Text);
    // Not of the label, which has its own when it is cut.
    m_tips->parentWidget()->setToolTip(plainToolTip(setup.reason()));
    m_percent->setText(tr("%1 %").arg(setup.percent()));
    m_percent->setVisible(!isFailed && setup.percent() >= 0);
    m_progress->setVisible(!isFailed);
    m_progress->setRange(0, setup.percent() < 0 ? 0 : 100);
    m_progress->setValue(qMax(0, setup.percent()));
    m_close->setWord(isFailed ? tr("Close") : tr("Cancel"));
    m_setup->setText(setup.text());
    const bool isBusy = phase == Phase::Preparing || phase == Phase::SettingUp;
    if (isBusy)
        m_spinner->start();
    else
        m_spinner->stop();
    const bool hadFocus = isAncestorOf(QApplication::focusWidget());
    setCurrentIndex(isBusy                                          ? SetupPage
                    : phase == Phase::Idle || phase == Phase::Asked ? ChoicePage
                                                                    : TipsPage);
    // The focus would otherwise go to another row.
    if (hadFocus)
        (currentIndex() == ChoicePage ? static_cast<QWidget*>(m_combo)
                                      : currentWidget()->findChild<IconButton*>())
            ->setFocus();
}
