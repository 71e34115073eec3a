#include "convert/messages/DRTriggerText.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

using Event = DRTriggerText::Event;

constexpr std::array<std::pair<QByteArrayView, Event>, 3> kEvents{
    {{"insert", Event::Insert}, {"update", Event::Update}, {"delete", Event::Delete}}};

/// CREATE TRIGGER and the trigger's own name, which may be nearly any token.
bool skipName(DRSqlTokenReader& reader)
{
    if (!reader.skip("create")) {
        return false;
    }
    if (!reader.skip("temp")) {
        reader.skip("temporary");
    }
    if (!reader.skip("trigger") || (reader.skip("if") && !reader.skipAll({"not", "exists"}))) {
        return false;
    }
    reader.take();
    if (reader.skip(".")) {
        reader.take();
    }
    return true;
}

/// AFTER, BEFORE, INSTEAD OF or nothing, which means BEFORE.
bool readTime(DRSqlTokenReader& reader, DRTriggerText& trigger)
{
    trigger.isAfter = reader.skip("after");
    return trigger.isAfter || reader.skip("before") || !reader.skip("instead") || reader.skip("of");
}

bool readColumns(DRSqlTokenReader& reader, DRTriggerText& trigger)
{
    do {
        trigger.columns.append(reader.takeName());
    } while (reader.skip(","));
    return !trigger.columns.contains(QByteArray());
}

bool readEvent(DRSqlTokenReader& reader, DRTriggerText& trigger)
{
    const auto* const found =
        std::ranges::find_if(kEvents, [&reader](const auto& event) { return reader.skip(event.first); });
    if (found == kEvents.end()) {
        return false;
    }
    trigger.event = found->second;
    return !reader.skip("of") || readColumns(reader, trigger);
}

bool readTable(DRSqlTokenReader& reader, DRTriggerText& trigger)
{
    if (!reader.skip("on")) {
        return false;
    }
    trigger.table = reader.takeQualifiedName();
    return !trigger.table.isEmpty() && (!reader.skip("for") || reader.skipAll({"each", "row"}));
}

bool readCondition(DRSqlTokenReader& reader, DRTriggerText& trigger)
{
    if (!reader.skip("when")) {
        return true;
    }
    trigger.when = reader.takeUntil({"begin"});
    return !trigger.when.empty();
}

/// Up to the last END; only semicolons may follow it. No statement of a trigger holds a semicolon.
bool readBody(DRSqlTokenReader& reader, DRTriggerText& trigger)
{
    if (!reader.skip("begin")) {
        return false;
    }
    for (;;) {
        const DRSqlTokens statement = reader.takeUntil({";"});
        if (!reader.skip(";")) {
            return statement.size() == 1 && statement.front().is("end");
        }
        if (statement.size() == 1 && statement.front().is("end")) {
            return std::ranges::all_of(reader.rest(), [](const DRSqlToken& token) { return token.is(";"); });
        }
        trigger.statements.push_back(statement);
    }
}

} // namespace

std::optional<DRTriggerText> DRTriggerText::parse(QByteArrayView sql)
{
    const DRSqlTokens tokens = sqlTokensOf(sql);
    DRSqlTokenReader reader(tokens);
    DRTriggerText trigger;
    if (!skipName(reader) || !readTime(reader, trigger) || !readEvent(reader, trigger) || !readTable(reader, trigger) ||
        !readCondition(reader, trigger) || !readBody(reader, trigger)) {
        return std::nullopt;
    }
    return trigger;
}
