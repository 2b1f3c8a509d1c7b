#include <QGridLayout>
#include <QMetaEnum>
#include <QPainter>
#include <QVBoxLayout>

#include "Pages.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Color.h"
#include "fenk/style/Paint.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"

using namespace Fenk;

namespace Gallery {

namespace {

class Swatch : public QWidget {
public:
    explicit Swatch(Theme::Role role) : m_role(role) { setFixedHeight(Tokens::RowHeight); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QColor ground = Paint::color(m_role);
        Paint::box(&painter, rect(), Tokens::RadiusControl, ground, Paint::color(Theme::Border));
        const QColor text = Paint::color(Theme::Text);
        const QColor other = Paint::color(Theme::OnAccent);
        const QColor ink = contrast(text, ground) >= contrast(other, ground) ? text : other;
        painter.setPen(ink);
        painter.drawText(rect().adjusted(Tokens::Space12, 0, -Tokens::Space12, 0),
                         Qt::AlignVCenter | Qt::AlignLeft,
                         QMetaEnum::fromType<Theme::Role>().valueToKey(m_role));
        painter.setFont(Theme::instance()->font(Theme::Fixed));
        painter.drawText(rect().adjusted(Tokens::Space12, 0, -Tokens::Space12, 0),
                         Qt::AlignVCenter | Qt::AlignRight, ground.name().toUpper());
    }

private:
    Theme::Role m_role;
};

}  // namespace

QWidget* makeColorsPage() {
    auto* page = new QWidget;
    auto* columns = new QHBoxLayout(page);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(Tokens::Space24);

    auto* left = new QVBoxLayout;
    left->setSpacing(Tokens::Space8);
    left->addWidget(new Label("Colours", Label::Heading));
    auto* grid = new QGridLayout;
    grid->setSpacing(Tokens::Space8);
    for (int role = 0; role < Theme::RoleCount; ++role)
        grid->addWidget(new Swatch(Theme::Role(role)), role / 2, role % 2);
    left->addLayout(grid);
    left->addStretch();

    auto* right = new QVBoxLayout;
    right->setSpacing(Tokens::Space8);
    QVBoxLayout* type = addSection(right, "Type");
    type->addWidget(new Label("Page title 22", Label::Title));
    type->addWidget(new Label("Dialog title and program name 16", Label::Heading));
    type->addWidget(new Label("Body text 14: 把 Windows 程序带到这台电脑上", Label::Body));
    type->addWidget(new Label("Buttons and labels 14", Label::Strong));
    type->addWidget(new Label("Descriptions 14", Label::Secondary));
    type->addWidget(new Label("Tips and secondary text 12", Label::Small));
    const struct {
        const char* text;
        Theme::Role role;
    } states[] = {{"Installed", Theme::Success},
                  {"Needs attention", Theme::Warning},
                  {"Could not be installed", Theme::Danger}};
    for (const auto& state : states) {
        auto* label = new Label(state.text, Label::Body);
        label->setTextRole(state.role);
        type->addWidget(label);
    }
    QVBoxLayout* icons = addSection(right, "Icons");
    auto* row = new QGridLayout;
    row->setSpacing(Tokens::Space12);
    const QStringList names = {"search",  "add",     "remove",   "edit", "delete",  "copy",     "save",
                               "folder",  "refresh", "settings", "play", "stop",    "external", "info",
                               "success", "warning", "error",    "back", "forward", "more"};
    for (int i = 0; i < names.size(); ++i) {
        auto* picture = new QLabel;
        picture->setFixedSize(Tokens::IconLarge, Tokens::IconLarge);
        picture->setPixmap(Theme::icon("fenk-" + names[i]).pixmap(picture->size()));
        row->addWidget(picture, i / 10, i % 10);
    }
    icons->addLayout(row);
    right->addStretch();
    columns->addLayout(left, 1);
    columns->addLayout(right, 1);
    return page;
}

}  // namespace Gallery
