#pragma once

#include "fenk/controls/Label.h"

/// The line at the foot of a dialog that says what is under way, what is missing or what has failed. Elided.
/// Assistive programs hear each new text, but not the steps of a progress.
class StatusLine : public Fenk::Label {
    Q_OBJECT
public:
    enum class Kind { Plain, Progress, Error };

    explicit StatusLine(QWidget* parent = nullptr);

    /// Plain text.
    void tell(const QString& text, Kind kind = Kind::Plain);
};
