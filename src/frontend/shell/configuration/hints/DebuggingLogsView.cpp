#include "shell/configuration/hints/DebuggingLogsView.h"

#include <QScrollBar>

#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "shell/configuration/hints/HintHtml.h"

using Fenk::Theme;

DebuggingLogsView::DebuggingLogsView(QWidget* parent) : QTextBrowser(parent) {
    setObjectName("debugging_hints");
    setAccessibleName(tr("Hints"));
    setOpenLinks(false);
    Fenk::setTextAreaLook(this);
    connect(Theme::instance(), &Theme::changed, this, &DebuggingLogsView::render);
    render();
}

void DebuggingLogsView::showPage(const QString& page) {
    m_page = page;
    render();
}

QVariant DebuggingLogsView::loadResource(int, const QUrl&) {
    return {};
}

/// What the page calls green is the green of the theme.
void DebuggingLogsView::render() {
    const Theme* theme = Theme::instance();
    QPalette colors = theme->palette();
    colors.setColor(QPalette::Base, theme->color(Theme::Sunken));
    setPalette(colors);
    document()->setIndentWidth(Fenk::Tokens::Space16);
    const int place = verticalScrollBar()->value();
    document()->setDefaultStyleSheet(QString("a { color: %1; }").arg(theme->color(Theme::Accent).name()));
    setHtml(QString(m_page).replace(QLatin1String(HintHtml::FixedStyle),
                                    QString("color: %1;").arg(theme->color(Theme::Success).name())));
    verticalScrollBar()->setValue(place);
}
