#pragma once

#include "convert/messages/DRSqlTokens.h"

#include <QByteArray>

#include <optional>
#include <vector>

/// An UPDATE statement of a trigger that sets single columns of the rows that a condition names.
struct DRTriggerUpdate {
    struct Assignment {
        QByteArray column;
        DRSqlTokens value;
    };

    QByteArray table;
    std::vector<Assignment> assignments;
    DRSqlTokens where;

    /// None for every other statement and for an UPDATE with OR, an alias, a list of columns to set, or without WHERE.
    [[nodiscard]] static std::optional<DRTriggerUpdate> parse(const DRSqlTokens& statement);

    /// Whether it is the row of `new.thread_id` that is updated.
    [[nodiscard]] bool isOfNewThread() const;

    /// Whether it is the thread of the message that the new part belongs to that is updated: its message's ID is
    /// `new.mid`.
    [[nodiscard]] bool isOfThreadOfNewPart() const;
};
