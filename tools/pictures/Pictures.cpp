#include "Pictures.h"

#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QPainter>
#include <QTextStream>
#include <QWidget>

#include "core/ProductFacts.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/system/WindowPlatform.h"
#include "fenk/window/Application.h"

using namespace Fenk;

namespace {

int fail(const QString& errorText) {
    QTextStream(stderr) << errorText << '\n';
    return 1;
}

}  // namespace

void settle(int ms) {
    QElapsedTimer settled;
    settled.start();
    while (settled.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

QImage picture(const QList<QWidget*>& windows) {
    QRect all;
    for (QWidget* window : windows) {
        if (!window->isVisible()) {
            window->show();
            settle(Tokens::FadeMs);
        }
        all |= window->geometry();
    }
    all.adjust(-Tokens::Space32, -Tokens::Space32, Tokens::Space32, Tokens::Space32);
    const qreal ratio = windows.first()->devicePixelRatioF();
    QImage result(all.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    result.setDevicePixelRatio(ratio);
    result.fill(Theme::instance()->color(Theme::Sunken));
    QPainter painter(&result);
    painter.fillRect(QRect(0, 0, all.width() / 2, all.height()), Theme::instance()->color(Theme::AccentSoft));
    for (QWidget* window : windows)
        painter.drawPixmap(window->pos() - all.topLeft(), window->grab());
    painter.end();
    result.setDevicePixelRatio(1);
    return result;
}

QPixmap sampleIcon(int number, const QString& name) {
    QPixmap pixmap(128, 128);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = QColor::fromHsv(number * 67 % 360, 150, 215);
    QLinearGradient ground(0, 0, 0, 128);
    ground.setColorAt(0, colour.lighter(115));
    ground.setColorAt(1, colour.darker(115));
    painter.setBrush(ground);
    painter.setPen(Qt::NoPen);
    if (number % 3)
        painter.drawRoundedRect(QRectF(8, 8, 112, 112), 26, 26);
    else
        painter.drawEllipse(QRectF(6, 6, 116, 116));
    QFont font;
    font.setPixelSize(62);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(QRectF(0, 0, 128, 128), Qt::AlignCenter, name.left(1));
    return pixmap;
}

int takePicture(int argc, char** argv, const QVector<PictureState>& states) {
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    Application application(argc, argv);
    QCoreApplication::setOrganizationName("lumora");
    QCoreApplication::setApplicationName("cellarix");
    application.setTranslationsDir(PICTURE_TRANSLATIONS);
    application.loadTranslator();
    Theme::addIconSearchPath(PICTURE_ICONS);

    QCommandLineParser options;
    options.addHelpOption();
    options.addPositionalArgument("STATE", "Which picture.");
    options.addOptions({{"theme", "light or dark.", "theme", "light"},
                        {"screenshot", "Where to write the picture.", "file"}});
    options.process(application);
    WindowPlatform::assumeCompositing(true);
    nameProduct(application);
    Theme::instance()->setAnimationsEnabled(false);
    Theme::instance()->setColorType(options.value("theme") == "dark" ? Theme::Dark : Theme::Light);
    QStringList names;
    for (const PictureState& state : states) {
        names << state.name;
        if (options.positionalArguments().value(0) == state.name)
            return state.paint().save(options.value("screenshot"))
                       ? 0
                       : fail("The picture could not be written to " + options.value("screenshot"));
    }
    return fail("The states are " + names.join(", "));
}
