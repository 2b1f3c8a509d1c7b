#pragma once

#include <QCoreApplication>

/// Contexts for the texts that rules choose.
struct BasicPageText {
    Q_DECLARE_TR_FUNCTIONS(BasicPageText)
};

struct SwitcherText {
    Q_DECLARE_TR_FUNCTIONS(SwitcherText)
};
