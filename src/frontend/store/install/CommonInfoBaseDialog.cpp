#include "store/install/CommonInfoBaseDialog.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QUrl>

#include "backend/TextUtils.h"
#include "fenk/controls/Card.h"
#include "fenk/controls/Label.h"
#include "fenk/style/Tokens.h"
#include "store/install/SetupDownload.h"

using namespace Fenk;

namespace {

constexpr int MinimumWidth = 500;
constexpr int MaximumWidth = 585;
constexpr int OrdinaryWidth = 568;

}  // namespace

QString breakable(const QString& text) {
    constexpr int Longest = 300, Part = 16;
    const QString shortened = text.size() > Longest ? text.left(Longest) + QChar(0x2026) : text;
    QString result;
    for (int at = 0; at < shortened.size(); at += Part)
        result += (at > 0 ? QString(QChar(0x200B)) : QString()) + shortened.mid(at, Part);
    return result;
}

QString webLinkHtml(const QString& url) {
    const QUrl address(url.trimmed(), QUrl::TolerantMode);
    if (!SetupDownload::canFetch(address))
        return breakable(url).toHtmlEscaped();
    const QString encoded = QString::fromLatin1(address.toEncoded());
    return TextUtils::linkHtml(encoded, breakable(encoded));
}

void openWebLink(const QString& url) {
    const QUrl address(url);
    if (SetupDownload::canFetch(address))
        QDesktopServices::openUrl(address);
}

CommonInfoBaseDialog::CommonInfoBaseDialog(QWidget* parent) : Dialog(parent), m_card(new Card) {
    setMinimumWidth(MinimumWidth);
    setMaximumWidth(MaximumWidth);
    resize(OrdinaryWidth, height());
    addContent(m_card);
}

void CommonInfoBaseDialog::addTextRow(const QString& title, const QString& value, const QString& remark) {
    if (value.isEmpty())
        return;
    auto* label = new Label(value.simplified(), Label::Body);
    label->setElided(true);
    addRow(title, label, remark);
}

void CommonInfoBaseDialog::addLinkRow(const QString& title, const QString& url) {
    const QString html = webLinkHtml(url);
    if (!html.startsWith('<')) {
        addTextRow(title, url);
        return;
    }
    auto* label = new Label(Label::Body);
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    label->setText(html);
    label->setToolTip(plainToolTip(breakable(url)));
    label->setMinimumWidth(0);
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    connect(label, &QLabel::linkActivated, label, &openWebLink);
    addRow(title, label, {});
}

void CommonInfoBaseDialog::addRow(const QString& title, QWidget* value, const QString& remark) {
    auto* name = new Label(title, Label::Secondary);
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(Tokens::Space16, Tokens::Space8, Tokens::Space16, Tokens::Space8);
    layout->setSpacing(Tokens::Space8);
    layout->addWidget(name, 0, Qt::AlignTop);
    auto* values = new QVBoxLayout;
    values->setSpacing(Tokens::Space4);
    values->addWidget(value);
    if (!remark.isEmpty()) {
        auto* quiet = new Label(remark, Label::Small);
        quiet->setElided(true);
        values->addWidget(quiet);
    }
    layout->addLayout(values, 1);
    name->setBuddy(value);
    m_names += name;
    int widest = 0;
    for (const QWidget* other : qAsConst(m_names))
        widest = qMax(widest, other->sizeHint().width());
    for (QWidget* other : qAsConst(m_names))
        other->setMinimumWidth(widest);
    value->setAccessibleName(title);
    m_card->addRow(row);
}
