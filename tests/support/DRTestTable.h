#pragma once

#include <QTest> // IWYU pragma: export

/// The table of a test whose cases are rows: declares its columns when made, then adds a row with each call.
template <typename... Values> class DRTestTable {
public:
    template <typename... Names> explicit DRTestTable(const Names&... columns)
    {
        (QTest::addColumn<Values>(columns), ...);
    }

    void operator()(const char* name, const Values&... values) const { (QTest::newRow(name) << ... << values); }
};
