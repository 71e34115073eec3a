#include "convert/messages/DRMessageLosses.h"

#include "convert/messages/DRImportedMessage.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t kMostNamed = 200;

} // namespace

void DRMessageLosses::addMessage(const DRImportedMessage& message, const QString& why)
{
    const QString moment = message.date.toLocalTime().toString(u"yyyy-MM-dd HH:mm");
    const QString direction = message.isFromMe ? u"to"_s : u"from"_s;
    add(u"A message %1 %2 of %3"_s.arg(direction, message.address, moment), why);
}

void DRMessageLosses::addAttachment(const QString& filename, const QString& why)
{
    ++m_attachmentCount;
    add(filename.isEmpty() ? u"An attachment without a name"_s : u"The attachment "_s + filename, why);
}

void DRMessageLosses::add(const QString& what, const QString& why)
{
    if (m_named.size() < kMostNamed) {
        m_named.push_back({.what = what, .why = why});
        return;
    }
    ++m_furtherCount;
}

void DRMessageLosses::addAll(const DRMessageLosses& others)
{
    for (const DRMigrateSkippedItem& item : others.m_named) {
        add(item.what, item.why);
    }
    m_furtherCount += others.m_furtherCount;
    m_attachmentCount += others.m_attachmentCount;
}

void DRMessageLosses::tell(DRMigrateReport& report) const
{
    report.skipped.insert(report.skipped.end(), m_named.begin(), m_named.end());
    if (m_furtherCount > 0) {
        report.skipped.push_back({.what = u"Further messages and attachments: %1"_s.arg(m_furtherCount),
                                  .why = u"for reasons like these"_s});
    }
}
