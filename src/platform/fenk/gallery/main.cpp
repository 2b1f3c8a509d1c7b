#include <QCommandLineParser>
#include <QTextStream>

#include "GalleryWindow.h"
#include "Picture.h"
#include "fenk/style/Theme.h"
#include "fenk/system/WindowPlatform.h"
#include "fenk/window/Application.h"

using namespace Fenk;

namespace {

/// The scale must be set before the application object exists.
void takeScale(int argc, char** argv) {
    for (int i = 1; i + 1 < argc; ++i) {
        if (qstrcmp(argv[i], "--scale") == 0)
            qputenv("QT_SCALE_FACTOR", argv[i + 1]);
    }
}

QImage pictureIn(Theme::ColorType type, const QString& page) {
    Theme::instance()->setColorType(type);
    return Gallery::picture(page);
}

int fail(const QString& text) {
    QTextStream(stderr) << text << '\n';
    return 1;
}

int takePicture(const QString& file, const QString& theme, const QString& page) {
    WindowPlatform::assumeCompositing(true);
    Theme::instance()->setAnimationsEnabled(false);
    QImage image;
    if (theme == "both")
        image = Gallery::sideBySide(pictureIn(Theme::Light, page), pictureIn(Theme::Dark, page));
    else
        image = pictureIn(theme == "dark" ? Theme::Dark : Theme::Light, page);
    if (image.isNull())
        return fail("There is no page " + page);
    return image.save(file) ? 0 : fail("The picture could not be written to " + file);
}

}  // namespace

int main(int argc, char** argv) {
    takeScale(argc, argv);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    Application app(argc, argv);
    app.setApplicationVersion("1.0");
    app.setProductName("Fenk gallery");
    app.setApplicationDescription("Shows every control of the toolkit in its states, in both themes.");
    app.setAboutLink("<a href=\"file:///usr/share/doc\">Documents on this machine</a>");
    app.setProductIcon(Theme::icon("cellarix"));

    QCommandLineParser parser;
    parser.setApplicationDescription("Shows every control of the toolkit in its states.");
    parser.addHelpOption();
    const QString pages = Gallery::GalleryWindow::pageNames().join(", ");
    parser.addOptions(
        {{"theme", "light, dark, or both for a picture.", "theme"},
         {"page", pages + "; for a picture also dialog, warning, about or menu.", "page", "controls"},
         {"screenshot", "Write a picture and leave.", "file"},
         {"scale", "Factor for all sizes.", "factor", "1"},
         {"icons", "A further directory of icon themes.", "directory"}});
    parser.process(app);
    const QString theme = parser.value("theme");
    if (!theme.isEmpty() && theme != "light" && theme != "dark" && theme != "both")
        return fail("The theme is light, dark or both, not " + theme);
    if (parser.isSet("icons")) {
        Theme::addIconSearchPath(parser.value("icons"));
        app.setProductIcon(Theme::icon("cellarix"));
    }
    if (parser.isSet("screenshot"))
        return takePicture(parser.value("screenshot"), theme, parser.value("page"));
    if (!theme.isEmpty())
        Theme::instance()->setColorType(theme == "dark" ? Theme::Dark : Theme::Light);
    Gallery::GalleryWindow window;
    if (!window.showPage(parser.value("page")))
        return fail("The pages are " + pages);
    window.show();
    return QApplication::exec();
}
