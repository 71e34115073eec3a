#pragma once

#include "convert/messages/DRSqlTokens.h"

#include <QByteArray>
#include <QList>

#include <optional>
#include <vector>

/// What the text of a trigger says, as `sqlite_master` keeps it. Names are in lower case.
struct DRTriggerText {
    enum class Event { Insert, Update, Delete };

    bool isAfter = false; ///< else BEFORE or INSTEAD OF
    Event event = Event::Insert;
    QList<QByteArray> columns; ///< of UPDATE OF; empty for every update
    QByteArray table;
    DRSqlTokens when; ///< the condition; empty for none
    std::vector<DRSqlTokens> statements;

    /// None when the text is not that of a trigger, or when a name stands in single quotes.
    [[nodiscard]] static std::optional<DRTriggerText> parse(QByteArrayView sql);
};
