#include "widgets/GridKeys.h"

#include <QtCore/qnamespace.h>

std::optional<int> GridKeys::target(int key, int at, int columns, int rowsPerPage, int count) {
    switch (key) {
        case Qt::Key_Left:
            return at - 1;
        case Qt::Key_Right:
            return at + 1;
        case Qt::Key_Up:
            return at >= columns ? std::optional(at - columns) : std::nullopt;
        case Qt::Key_Down:
            return at + columns;
        case Qt::Key_PageUp:
            return at - rowsPerPage * columns;
        case Qt::Key_PageDown:
            return at + rowsPerPage * columns;
        case Qt::Key_Home:
            return 0;
        case Qt::Key_End:
            return count - 1;
        default:
            return {};
    }
}
