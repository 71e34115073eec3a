#include "platform/contacts/DRCSContact.h"

#include "platform/contacts/DRContactNames.h"
#include "platform/contacts/DRVCardPicture.h"
#include "platform/contacts/DRVCardRenderer.h"

#include <QStringList>

QByteArray DRCSContact::vCardRepresentation() const
{
    const QByteArray card = DRVCardRenderer::cardOf(*this);
    return m_shouldUploadImage ? DRVCardPicture::withPicture(card, m_image) : card;
}

QString DRCSContact::displayName() const
{
    QStringList candidates{DRContactNames::formatted(m_name)};
    for (const GDataOrganization& organization : m_organizations) {
        candidates << organization.orgName;
    }
    candidates << m_nickname;
    for (const GDataEmail& email : m_emailAddresses) {
        candidates << email.address;
    }
    for (const GDataPhoneNumber& number : m_phoneNumbers) {
        candidates << number.stringValue;
    }
    candidates.removeAll(QString());
    return candidates.value(0);
}
