#include "convert/messages/DRMessageLosses.h"

#include "convert/messages/DRImportedMessage.h"

using namespace Qt::StringLiterals;

DRMessageLosses::DRMessageLosses() : m_losses(u"messages and attachments"_s) {}

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
    m_losses.add({.what = what, .why = why});
}

void DRMessageLosses::addAll(const DRMessageLosses& others)
{
    m_losses.addAll(others.m_losses);
    m_attachmentCount += others.m_attachmentCount;
}

void DRMessageLosses::tell(DRMigrateReport& report) const
{
    m_losses.tell(report);
}
