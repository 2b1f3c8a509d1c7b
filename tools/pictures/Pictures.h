#pragma once

#include <QImage>
#include <QList>
#include <QVector>
#include <functional>
#include <utility>

class QPixmap;
class QWidget;

/// One picture that such a program can take. A null image means that it failed.
struct PictureState {
    const char* name;
    std::function<QImage()> paint;
};

/// The main function of a program of pictures: NAME STATE [--theme light|dark] --screenshot FILE. LANG
/// chooses English or Chinese. Animations are off; entries and buttons that lead to other windows are shown
/// as in the application. Returns the exit status.
int takePicture(int argc, char** argv, const QVector<PictureState>& states);
/// The same for states that are named functions, which `paint` makes a picture with.
template <class Windows, class Paint>
int takePicture(int argc, char** argv, const QVector<std::pair<const char*, Windows>>& named, Paint paint) {
    QVector<PictureState> states;
    for (const auto& [name, windows] : named)
        states.append({name, [paint, windows = windows] { return paint(windows); }});
    return takePicture(argc, argv, states);
}

/// Runs the event loop for this time.
void settle(int ms);
/// Shows the windows and paints them over each other, the lowest first, on a ground of two colours.
QImage picture(const QList<QWidget*>& windows);
/// An icon as programs have them: a colour, a shape, a letter.
QPixmap sampleIcon(int number, const QString& name);
