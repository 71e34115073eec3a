#pragma once

#include "platform/contacts/DRGDataElements.h"

#include <QByteArray>

#include <vector>

/// One person or company of an address book: what a synchronisation carries from one address book into another. Elements
/// are kept in the order in which they were added.
class DRCSContact {
public:
    void setName(const GDataName& name) { m_name = name; }
    void setBirthday(const QString& birthday) { m_birthday = birthday; }
    void setNickname(const QString& nickname) { m_nickname = nickname; }
    void addJot(const GDataContactJot& jot) { m_jots.push_back(jot); }
    void addOrganization(const GDataOrganization& organization) { m_organizations.push_back(organization); }
    void addPhoneNumber(const GDataPhoneNumber& number) { m_phoneNumbers.push_back(number); }
    void addEmailAddress(const GDataEmail& address) { m_emailAddresses.push_back(address); }
    void addStructuredPostalAddress(const GDataStructuredPostalAddress& address)
    {
        m_postalAddresses.push_back(address);
    }
    void addEvent(const GDataContactEvent& event) { m_events.push_back(event); }
    void addIMAddress(const GDataIM& account) { m_imAddresses.push_back(account); }
    void addWebsiteLink(const GDataContactWebsiteLink& link) { m_websiteLinks.push_back(link); }
    void addRelation(const GDataContactRelation& relation) { m_relations.push_back(relation); }
    void setImage(const QByteArray& image) { m_image = image; }
    void setShouldUploadImage(bool shouldUpload) { m_shouldUploadImage = shouldUpload; }

    [[nodiscard]] const GDataName& name() const { return m_name; }
    /// "yyyy-MM-dd", or "--MM-dd" without a year; null when there is none.
    [[nodiscard]] const QString& birthday() const { return m_birthday; }
    [[nodiscard]] const QString& nickname() const { return m_nickname; }
    [[nodiscard]] const std::vector<GDataContactJot>& jots() const { return m_jots; }
    [[nodiscard]] const std::vector<GDataOrganization>& organizations() const { return m_organizations; }
    [[nodiscard]] const std::vector<GDataPhoneNumber>& phoneNumbers() const { return m_phoneNumbers; }
    [[nodiscard]] const std::vector<GDataEmail>& emailAddresses() const { return m_emailAddresses; }
    [[nodiscard]] const std::vector<GDataStructuredPostalAddress>& structuredPostalAddresses() const
    {
        return m_postalAddresses;
    }
    [[nodiscard]] const std::vector<GDataContactEvent>& events() const { return m_events; }
    [[nodiscard]] const std::vector<GDataIM>& imAddresses() const { return m_imAddresses; }
    [[nodiscard]] const std::vector<GDataContactWebsiteLink>& websiteLinks() const { return m_websiteLinks; }
    [[nodiscard]] const std::vector<GDataContactRelation>& relations() const { return m_relations; }
    [[nodiscard]] const QByteArray& image() const { return m_image; }
    /// Whether the picture goes along into the card.
    [[nodiscard]] bool shouldUploadImage() const { return m_shouldUploadImage; }

    /// The contact as one vCard 3.0 in UTF-8 that ends with a line break, made for Android's importer: see
    /// docs/formats/vcard.md for what becomes of each element. The markers "BEGIN:VCARD" and "END:VCARD" stand in it
    /// exactly once, whatever the contact's texts hold. A picture that is neither JPEG nor PNG is left out.
    [[nodiscard]] QByteArray vCardRepresentation() const;

    /// How the contact is called, for a person to read: its name, else its company, nickname, first e-mail address or
    /// first number. Empty when it has none of them.
    [[nodiscard]] QString displayName() const;

private:
    GDataName m_name;
    QString m_birthday;
    QString m_nickname;
    std::vector<GDataContactJot> m_jots;
    std::vector<GDataOrganization> m_organizations;
    std::vector<GDataPhoneNumber> m_phoneNumbers;
    std::vector<GDataEmail> m_emailAddresses;
    std::vector<GDataStructuredPostalAddress> m_postalAddresses;
    std::vector<GDataContactEvent> m_events;
    std::vector<GDataIM> m_imAddresses;
    std::vector<GDataContactWebsiteLink> m_websiteLinks;
    std::vector<GDataContactRelation> m_relations;
    QByteArray m_image;
    bool m_shouldUploadImage = false;
};
