#pragma once

#include <QImage>
#include <QList>
#include <QVector>
#include <functional>

class QWidget;

namespace TestSupport {

/// One picture that a program of pictures can take. A null image means that it came to nothing.
struct PictureState {
    const char* name;
    std::function<QImage()> paint;
};

/// The main function of such a program: NAME STATE [--theme light|dark] --screenshot FILE. In Chinese where
/// LANG says so, with our own icons, without animations; entries and buttons that lead to other windows are
/// there or not as in the application.
int takePicture(int argc, char** argv, const QVector<PictureState>& states);

/// Turns the event loop for so long.
void settle(int ms);
/// Windows as they lie over each other, the lowest first, on a ground of two colours. Shows them.
QImage picture(const QList<QWidget*>& windows);

}  // namespace TestSupport
