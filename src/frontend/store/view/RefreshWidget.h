#pragma once

#include "programs/ListPlaceholder.h"

/// Shown when a request has failed: what happened, and "Retry".
class RefreshWidget : public ListPlaceholder {
    Q_OBJECT
public:
    explicit RefreshWidget(QWidget* parent = nullptr);
};
