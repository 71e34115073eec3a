#pragma once

#include <QString>

#include <span>
#include <vector>

class DRDatabase;

/// A table that is to be written, and those of its columns that must be there: phones differ.
struct DRNeededColumns {
    const char* table;
    std::vector<const char*> columns;

    /// What the database lacks of it, such as "sms" or "sms.sequence_time"; null when it has all.
    [[nodiscard]] QString lackIn(DRDatabase& database) const;

    /// The first lack among several tables; null when there is none.
    [[nodiscard]] static QString firstLackIn(DRDatabase& database, std::span<const DRNeededColumns> tables);
};
