#include "Picture.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMenu>
#include <QPainter>

#include "GalleryWindow.h"
#include "fenk/style/Theme.h"
#include "fenk/style/Tokens.h"
#include "fenk/style/WidgetLook.h"
#include "fenk/window/AboutDialog.h"
#include "fenk/window/Application.h"
#include "fenk/window/Dialog.h"

using namespace Fenk;

namespace Gallery {

namespace {

/// Waits for layouts and fades, then renders the widget with transparent corners.
QImage grabbed(QWidget& widget) {
    widget.show();
    widget.activateWindow();
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < Tokens::FadeMs)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    if (auto* sample = widget.findChild<QWidget*>("focus_sample"))
        sample->setFocus(Qt::TabFocusReason);
    QCoreApplication::processEvents();
    return widget.grab().toImage();
}

QImage withGround(const QImage& picture) {
    const qreal ratio = picture.devicePixelRatioF();
    const int margin = int(Tokens::Space32 * ratio);
    QImage result(picture.size() + QSize(2 * margin, 2 * margin), QImage::Format_ARGB32_Premultiplied);
    result.fill(Theme::instance()->color(Theme::Sunken));
    QPainter painter(&result);
    QImage plain = picture;
    plain.setDevicePixelRatio(1);
    painter.drawImage(margin, margin, plain);
    painter.end();
    return result;
}

QImage dialogPicture() {
    Dialog dialog("Close Running",
                  "The application is starting up, this process will continue for a short while,\n"
                  "are you sure you want to close it now?");
    dialog.setIcon(Theme::icon("cellarix"));
    dialog.addButton("Close");
    dialog.addButton("Keep waiting", true, Dialog::ButtonRecommend);
    return grabbed(dialog);
}

QImage warningPicture() {
    Dialog dialog("Delete the bottle Office?",
                  "Its 3 programs and their files are lost. Documents outside the bottle stay.");
    dialog.setIcon(Theme::icon("dialog-warning"));
    dialog.addContent(new QCheckBox("Keep the desktop entries"));
    dialog.addButton("Keep");
    dialog.addButton("Delete", false, Dialog::ButtonWarning);
    return grabbed(dialog);
}

QImage aboutPicture() {
    const auto* app = qobject_cast<Application*>(qApp);
    AboutDialog about({Theme::icon("cellarix"), app->productName(), app->applicationVersion(),
                       app->applicationDescription(), app->aboutLink()});
    return grabbed(about);
}

QImage menuPicture() {
    QMenu menu;
    QMenu theme("Theme");
    menu.addAction(Theme::icon("fenk-play"), "Run");
    menu.addAction(Theme::icon("fenk-settings"), "Configure")->setShortcut(QKeySequence("Ctrl+E"));
    menu.addMenu(&theme);
    theme.addAction("Dark");
    QAction* terminal = menu.addAction("Run in terminal");
    terminal->setCheckable(true);
    terminal->setChecked(true);
    menu.addAction("Create package")->setEnabled(false);
    menu.addSeparator();
    setDestructive(menu.addAction(Theme::icon("fenk-delete"), "Uninstall"));
    menu.popup(QPoint(40, 40));
    menu.setActiveAction(menu.actions().at(1));
    return grabbed(menu);
}

}  // namespace

QImage picture(const QString& page) {
    if (page == "dialog")
        return withGround(dialogPicture());
    if (page == "warning")
        return withGround(warningPicture());
    if (page == "about")
        return withGround(aboutPicture());
    if (page == "menu")
        return withGround(menuPicture());
    GalleryWindow window;
    if (!window.showPage(page))
        return {};
    return withGround(grabbed(window));
}

QImage sideBySide(const QImage& left, const QImage& right) {
    QImage both(left.width() + right.width(), qMax(left.height(), right.height()),
                QImage::Format_ARGB32_Premultiplied);
    both.fill(Qt::transparent);
    QPainter painter(&both);
    painter.drawImage(0, 0, left);
    painter.drawImage(left.width(), 0, right);
    return both;
}

}  // namespace Gallery
