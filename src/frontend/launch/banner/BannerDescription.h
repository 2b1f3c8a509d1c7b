#pragma once

#include "fenk/controls/Label.h"

/// The line of a banner that says what happens, or after a failure why. A step has one line, elided; a reason
/// has as many lines as it needs and can be selected.
class BannerDescription : public Fenk::Label {
    Q_OBJECT
public:
    explicit BannerDescription(QWidget* parent = nullptr);

    /// Plain text. The lines of a reason are kept, since it may hold commands.
    void showText(const QString& text);
    void setReason(bool isReason);
    bool isReason() const { return m_isReason; }

    /// For a reason: how many lines it may have at most; 0 is no limit. Its tool tip has all of it.
    void limitLines(int lines);
    /// The lines that a reason may keep when it is to be lower by some pixels.
    int linesWithout(int pixels) const;

private:
    QString m_shown;
    bool m_isReason = false;
};
