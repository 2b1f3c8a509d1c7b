#pragma once

#include <QString>

/// A page of the configuration window that can show only what matches a text: for the window's search, and
/// for the hints that lead to a component by its name.
class SearchedPage {
public:
    virtual ~SearchedPage() = default;

    /// Shows only what matches; everything for an empty text. Returns how many entries are shown.
    virtual int filter(const QString& text) = 0;
};
