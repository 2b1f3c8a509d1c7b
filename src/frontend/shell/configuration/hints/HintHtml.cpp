#include "shell/configuration/hints/HintHtml.h"

#include <QCoreApplication>
#include <QDomDocument>

#include "shell/configuration/hints/HintRules.h"

const char HintHtml::FixedStyle[] = "color: green;";

namespace {

const char FontsId[] = "fix-fonts-a";

/// Also without characters that no HTML may contain.
QString escaped(QString text) {
    for (QChar& c : text) {
        if (c.unicode() < ' ' || c.unicode() == 0xfffe || c.unicode() == 0xffff)
            c = ' ';
    }
    return text.toHtmlEscaped();
}

QString link(const QString& target, const QString& text, const char* id = nullptr) {
    const QString idText = id ? QString(R"(id="%1")").arg(QLatin1String(id)) : QString();
    return QString(R"(<a %1 style="text-decoration: none;" href="%2">%3</a>)")
        .arg(idText, escaped(target), escaped(text));
}

QString componentLinks(const QStringList& names) {
    QString items;
    for (const QString& name : names)
        items += "<li>" + link("component:" + name, name) + "</li>";
    return "<ul>" + items + "</ul>";
}

class Texts {
    Q_DECLARE_TR_FUNCTIONS(DebuggingLogsView)

public:
    static QString of(const Hint& hint, const QString& helpUrl) {
        switch (hint.kind) {
            case Hint::Kind::DotNetRuntime:
                return escaped(
                           tr("The application need .NET runtime, you can try to install it by click follow "
                              "link:")) +
                       componentLinks(hint.names);
            case Hint::Kind::MissingFonts:
                return fonts(hint.names);
            case Hint::Kind::MissingComponents:
                return escaped(tr("Missing Components for app:")) + componentLinks(hint.names);
            case Hint::Kind::GameGraphics:
                return escaped(tr("You can try to %1 , and setup %2 for gamming."))
                    .arg(link(helpUrl, tr("install graphics card driver")),
                         link("tab:0", tr("dxvk, vkd3d or proton")));
            case Hint::Kind::Console:
                return escaped(tr("For console applications, you can run it in terminal"));
            case Hint::Kind::SteamRuntimeEnded:
                return escaped(tr("Killed broken steam runtime, please restart the application"));
            case Hint::Kind::OtherWine:
                return otherWine();
            case Hint::Kind::OtherWineOrTranslator:
                return otherWine() + "<br/>" +
                       link("tab:1", tr("or, you can try to change the translator in Wine Parameter page"));
            case Hint::Kind::OlderWindows:
                return link("tab:0",
                            tr("Application use some windows runtime libs that not been implemented in "
                               "wine,you can try to switch Windows version to Windows 7 and relaunch"));
        }
        return {};
    }

    static QString fontsFixed() { return tr("Missing fonts has been fixed"); }

private:
    static QString otherWine() {
        return link("tab:0", tr("Application is not running as expected, you can try switch wine version and "
                                "relaunch in Basic Configuration page"));
    }

    static QString fonts(const QStringList& names) {
        return escaped(tr("Missing Fonts for app: %1")).arg(escaped(names.join(' '))) + "<br/>" +
               link("fonts:" + names.join(':'), tr("Try to fix the missing fonts"), FontsId) + "<br/>" +
               escaped(tr("or, ")) +
               link("{drive_c}/windows/Fonts", tr("open the C:\\\\\\\\Windows\\\\Fonts directory")) +
               escaped(tr(", download and copy missing fonts to the font directory by yourself."));
    }
};

QDomElement elementWithId(const QDomElement& parent, const QString& id) {
    if (parent.attribute("id") == id)
        return parent;
    for (QDomElement child = parent.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const QDomElement found = elementWithId(child, id);
        if (!found.isNull())
            return found;
    }
    return {};
}

}  // namespace

QString HintHtml::page(const QVector<Hint>& hints, const QString& helpUrl) {
    QString items;
    for (const Hint& hint : hints)
        items += R"(<li style="margin-top:4px; margin-bottom:4px; margin-right:0px">)" +
                 Texts::of(hint, helpUrl) + "</li>";
    return items.isEmpty() ? QString() : "<html><body><ul>" + items + "</ul></body></html>";
}

QString HintHtml::withFontsFixed(const QString& page) {
    QDomDocument document;
    if (!document.setContent(page))
        return page;
    QDomElement anchor = elementWithId(document.documentElement(), FontsId);
    if (anchor.isNull())
        return page;
    anchor.setAttribute("style", FixedStyle);
    anchor.setAttribute("href", QString());
    while (!anchor.firstChild().isNull())
        anchor.removeChild(anchor.firstChild());
    anchor.appendChild(document.createTextNode(Texts::fontsFixed()));
    return document.toString(-1);
}
