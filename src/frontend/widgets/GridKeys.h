#pragma once

#include <optional>

/// Where a key leads in a grid that is filled row by row.
namespace GridKeys {

/// `at` is the present cell, `columns` and `rowsPerPage` are at least 1, `count` is the number of cells. The
/// answer may lie outside the grid: the first or last cell is meant then. Nothing for other keys, and for Up
/// in the first row, which leads out of the grid.
std::optional<int> target(int key, int at, int columns, int rowsPerPage, int count);

}  // namespace GridKeys
