#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

#include "Pages.h"
#include "fenk/controls/Card.h"
#include "fenk/controls/IconButton.h"
#include "fenk/controls/Label.h"
#include "fenk/controls/LineEdit.h"
#include "fenk/controls/SearchEdit.h"
#include "fenk/controls/Spinner.h"
#include "fenk/controls/SuggestButton.h"
#include "fenk/controls/SwitchButton.h"
#include "fenk/controls/WarningButton.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"

using namespace Fenk;

namespace Gallery {

namespace {

template <class Widget>
Widget* named(Widget* widget, const QString& name) {
    widget->setAccessibleName(name);
    return widget;
}

/// A screenshot has no pointer, so one control of each kind is shown as hovered.
template <class Widget>
Widget* hovered(Widget* widget) {
    widget->setAttribute(Qt::WA_UnderMouse);
    return widget;
}

template <class Widget>
Widget* disabled(Widget* widget) {
    widget->setEnabled(false);
    return widget;
}

QHBoxLayout* line(QVBoxLayout* card, const QString& name) {
    auto* row = new QHBoxLayout;
    row->setSpacing(Tokens::Space12);
    auto* label = new Label(name, Label::Secondary);
    label->setMinimumWidth(92);
    row->addWidget(label);
    card->addLayout(row);
    return row;
}

void addButtons(QVBoxLayout* page) {
    QVBoxLayout* card = addSection(page, "Buttons");
    const auto states = [card](const QString& kind, auto make) {
        QHBoxLayout* row = line(card, kind);
        row->addWidget(make("Normal"));
        row->addWidget(hovered(make("Hover")));
        auto* down = make("Pressed");
        down->setDown(true);
        row->addWidget(down);
        row->addWidget(disabled(make("Disabled")));
        row->addStretch();
    };
    states("Plain", [](const QString& text) { return new QPushButton(text); });
    states("Suggested", [](const QString& text) { return new SuggestButton(text); });
    states("Destructive", [](const QString& text) { return new WarningButton(text); });
    states("Confirming", [](const QString& text) {
        auto* button = new WarningButton(text);
        button->setFilled(true);
        return button;
    });
    QHBoxLayout* row = line(card, "Pictures");
    auto* add = new QPushButton(Theme::icon("fenk-add"), "Add program");
    add->setObjectName("focus_sample");
    row->addWidget(add);
    auto* more = new QPushButton("Export");
    auto* menu = new QMenu(more);
    menu->addAction("As manifest");
    menu->addAction("As package");
    more->setMenu(menu);
    row->addWidget(more);
    row->addWidget(new IconButton("fenk-play", "Run"));
    row->addWidget(hovered(new IconButton("fenk-settings", "Settings")));
    row->addWidget(disabled(new IconButton("fenk-delete", "Delete")));
    row->addWidget(new IconButton("fenk-more", "More", nullptr, IconButton::Compact));
    row->addStretch();
}

void addFields(QVBoxLayout* page) {
    QVBoxLayout* card = addSection(page, "Fields");
    auto* grid = new QGridLayout;
    grid->setSpacing(Tokens::Space12);
    auto* name = named(new LineEdit, "Program name");
    name->setPlaceholderText("Program name");
    auto* contact = named(new LineEdit, "Contact");
    contact->setText("someone@");
    contact->showAlertMessage("Enter an address such as name@example.org", 0);
    auto* fixed = named(disabled(new QLineEdit("C:\\Program Files\\Editor")), "Folder");
    fixed->setCursorPosition(0);
    auto* password = named(new QLineEdit("horse"), "Password");
    password->setEchoMode(QLineEdit::Password);
    auto* search = new SearchEdit;
    search->setText("edit");
    grid->addWidget(name, 0, 0, Qt::AlignTop);
    grid->addWidget(contact, 0, 1, Qt::AlignTop);
    grid->addWidget(fixed, 1, 0);
    grid->addWidget(password, 1, 1);
    grid->addWidget(search, 2, 0);

    auto* combo = named(new QComboBox, "Runner");
    combo->addItems({"Wine 10 stable", "Wine 8", "Wine 6"});
    auto* editable = named(new QComboBox, "Font");
    editable->setEditable(true);
    editable->addItems({"Noto Sans", "DejaVu Sans"});
    auto* spin = named(new QSpinBox, "Scaling");
    spin->setRange(50, 400);
    spin->setValue(100);
    spin->setSuffix(" %");
    grid->addWidget(combo, 2, 1);
    grid->addWidget(editable, 3, 0);
    grid->addWidget(spin, 3, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    card->addLayout(grid);
    auto* notes =
        named(new QPlainTextEdit("One line says what happened.\nThe next says what to do."), "Notes");
    notes->setFixedHeight(72);
    card->addWidget(notes);
}

void addChoices(QVBoxLayout* page) {
    QVBoxLayout* card = addSection(page, "Choices");
    QHBoxLayout* boxes = line(card, "Check boxes");
    auto* on = new QCheckBox("On");
    on->setChecked(true);
    auto* partly = new QCheckBox("Partly");
    partly->setTristate(true);
    partly->setCheckState(Qt::PartiallyChecked);
    boxes->addWidget(on);
    boxes->addWidget(new QCheckBox("Off"));
    boxes->addWidget(partly);
    boxes->addWidget(disabled(new QCheckBox("Disabled")));
    boxes->addStretch();
    QHBoxLayout* radios = line(card, "One of");
    auto* stable = new QRadioButton("Stable");
    stable->setChecked(true);
    radios->addWidget(stable);
    radios->addWidget(new QRadioButton("Newest"));
    radios->addWidget(disabled(new QRadioButton("Own build")));
    radios->addStretch();
    QHBoxLayout* switches = line(card, "Switches");
    const struct {
        bool checked;
        bool enabled;
    } kinds[] = {{false, true}, {true, true}, {false, false}, {true, false}};
    for (const auto& kind : kinds) {
        auto* button = named(new SwitchButton, "Sample switch");
        button->setChecked(kind.checked);
        button->setEnabled(kind.enabled);
        switches->addWidget(button);
    }
    switches->addStretch();
}

void addProgress(QVBoxLayout* page) {
    QVBoxLayout* card = addSection(page, "Progress");
    auto* bar = named(new QProgressBar, "Download");
    bar->setValue(42);
    auto* busy = named(new QProgressBar, "Preparing");
    busy->setRange(0, 0);
    auto* slider = named(new QSlider(Qt::Horizontal), "Volume");
    slider->setRange(0, 100);
    slider->setValue(60);
    auto* off = named(disabled(new QSlider(Qt::Horizontal)), "Disabled slider");
    off->setValue(30);
    line(card, "Known")->addWidget(bar, 1);
    line(card, "Unknown")->addWidget(busy, 1);
    QHBoxLayout* sliders = line(card, "Sliders");
    sliders->addWidget(slider, 1);
    sliders->addWidget(off, 1);
    QHBoxLayout* alive = line(card, "Alive");
    auto* spinner = new Spinner;
    spinner->start();
    alive->addWidget(spinner);
    alive->addWidget(new Label("Installing the fonts", Label::Body));
    alive->addStretch();
}

}  // namespace

QVBoxLayout* addSection(QVBoxLayout* page, const QString& title) {
    page->addWidget(new Label(title, Label::Heading));
    auto* card = new Card;
    auto* inside = new QWidget;
    auto* layout = new QVBoxLayout(inside);
    layout->setContentsMargins(Tokens::Space16, Tokens::Space16, Tokens::Space16, Tokens::Space16);
    layout->setSpacing(Tokens::Space12);
    card->addRow(inside);
    page->addWidget(card);
    page->addSpacing(Tokens::Space8);
    return layout;
}

QWidget* makeControlsPage() {
    auto* page = new QWidget;
    auto* columns = new QHBoxLayout(page);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(Tokens::Space24);
    for (const auto& fill :
         {std::make_pair(addButtons, addChoices), std::make_pair(addFields, addProgress)}) {
        auto* column = new QVBoxLayout;
        column->setSpacing(Tokens::Space8);
        fill.first(column);
        fill.second(column);
        column->addStretch();
        columns->addLayout(column, 1);
    }
    return page;
}

}  // namespace Gallery
