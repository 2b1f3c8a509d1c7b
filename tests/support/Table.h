#pragma once

#include <QtTest>

namespace TestSupport {

/// The rows of a data-driven test, a call each:
///     const Table<QString, bool> row("name", "isAllowed");
///     row("climbs out", "../a", false);
template <class... Columns>
class Table {
public:
    template <class... Names>
    explicit Table(Names... names) {
        (QTest::addColumn<Columns>(names), ...);
    }
    void operator()(const char* tag, const Columns&... values) const {
        (QTest::newRow(tag) << ... << values);
    }
};

}  // namespace TestSupport
