// The texts of a phone's triggers, which may be anything in a file of somebody else: they are taken apart without loss, and in
// time that does not grow with the square of their length.

#include "convert/messages/DRTriggerText.h"
#include "convert/messages/DRTriggerUpdate.h"
#include "fuzz/FuzzTarget.h"

namespace {

QByteArray wordsOf(QByteArrayView sql)
{
    QByteArray words;
    for (const DRSqlToken& token : sqlTokensOf(sql)) {
        require(!token.text.isEmpty() || token.kind == DRSqlToken::Kind::Name, "only a quoted name can be empty");
        words += token.text + ' ';
    }
    return words;
}

} // namespace

void fuzzOne(QByteArrayView bytes)
{
    const QByteArray words = wordsOf(bytes);
    require(words.size() <= 2 * bytes.size(), "no token stands for more than was there");
    const auto trigger = DRTriggerText::parse(bytes);
    if (trigger) {
        require(!trigger->table.isEmpty(), "a trigger has a table");
        for (const DRSqlTokens& statement : trigger->statements) {
            if (const auto update = DRTriggerUpdate::parse(statement)) {
                require(update->isOfNewThread() + update->isOfThreadOfNewPart() <= 1, "a condition has one meaning");
            }
        }
    }
    const QByteArray stretched = stretchedIfShort(bytes);
    require(stretched.isEmpty() || !DRTriggerText::parse(stretched) || trigger, "repeating makes no trigger");
}
