#pragma once

#include <QAccessibleWidget>

#include "widgets/LogCursor.h"

class LogView;

/// What assistive tools read of a LogView: the lines that are to be seen, as one text.
class LogTextInterface : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit LogTextInterface(LogView* view);

    /// From then on, every LogView has one.
    static void install();

    void* interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text type) const override;
    QAccessible::State state() const override;

    QString text(int begin, int end) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;
    int cursorPosition() const override;
    void setCursorPosition(int offset) override;
    int selectionCount() const override;
    void selection(int index, int* begin, int* end) const override;
    void addSelection(int begin, int end) override;
    void setSelection(int index, int begin, int end) override;
    void removeSelection(int index) override;
    void scrollToSubstring(int begin, int end) override;
    QString attributes(int offset, int* begin, int* end) const override;

private:
    LogView* view() const;
    QString wholeText() const;
    int offsetOf(const LogCursor::Place& place) const;
    LogCursor::Place placeOf(int offset) const;
};
