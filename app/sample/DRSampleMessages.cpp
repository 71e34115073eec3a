#include "app/sample/DRSampleMessages.h"

#include "app/sample/DRSampleAttachments.h"
#include "app/sample/DRSampleChatTables.h"
#include "app/sample/DRSampleGroupTables.h"
#include "app/sample/DRSampleIPhoneBackup.h"
#include "app/sample/DRSampleMessageTexts.h"
#include "app/sample/DRSamplePersonTexts.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 kSeed = 20140613;
constexpr int kChatsPerScale = 9;
constexpr int kMessagesPerScale = 1400;
constexpr int kGroupsPerScale = 2;
constexpr int kMessagesPerGroup = 25;
constexpr qint64 kFirstGroup = 1000;
constexpr qint64 kSecondsPerDay = 86'400;
constexpr qint64 kDaysOfChats = 370;
constexpr qint64 kHardChatsDaysAgo = 200;
constexpr qint64 kGroupsDaysAgo = 1'500;
constexpr qint64 kLateSeconds = 5'400;
constexpr std::array<QStringView, 12> kUsualKinds{
    u"jpeg", u"jpeg", u"jpeg", u"jpeg", u"jpeg", u"png", u"gif", u"movie", u"wave", u"amr", u"pdf", u"vcard",
};

bool oneIn(int count, DRSampleRandom& random)
{
    return random.below(count) == 0;
}

/// Whom messages are exchanged with: people of the address book and strangers in turn.
class People {
public:
    People()
    {
        for (const DRSamplePerson& person : m_texts.hardPeople()) {
            const QString address = firstAddress(person);
            if (!address.isNull()) {
                m_known.push_back(address);
            }
        }
    }

    [[nodiscard]] QString next(DRSampleRandom& random)
    {
        const std::size_t number = m_count++;
        if (number % 2 == 0 && number / 2 < m_known.size()) {
            return m_known[number / 2];
        }
        return firstAddress(m_texts.compose(random));
    }

private:
    /// As messages know it: a number without blanks and the like. Null when the person has neither number nor mail address.
    static QString firstAddress(const DRSamplePerson& person)
    {
        for (const DRSampleContactValue& value : person.values) {
            QString address = value.text;
            if (value.property == DRSampleProperty::kPhones) {
                return address.removeIf([](QChar character) { return QStringView(u" ()-").contains(character); });
            }
            if (value.property == DRSampleProperty::kEmails) {
                return address;
            }
        }
        return {};
    }

    DRSamplePersonTexts m_texts;
    std::vector<QString> m_known;
    std::size_t m_count = 0;
};

class Composer {
public:
    /// The settings must outlive this object.
    Composer(DRDatabase& database, DRSampleAttachments& attachments, const DRSampleSettings& settings)
        : m_settings(settings), m_groups(database, attachments), m_chats(database, attachments, settings)
    {
    }

    /// The groups come first, as on a phone that had them before it learned to keep chats.
    [[nodiscard]] bool run()
    {
        return insertHardGroups() && insertUsualGroups() && insertHardChats() && openUsualChats() &&
               insertUsualMessages();
    }

private:
    [[nodiscard]] qint64 daysAgo(qint64 days) const { return m_settings.moment.addDays(-days).toSecsSinceEpoch(); }

    [[nodiscard]] bool insertHardGroups()
    {
        qint64 moment = daysAgo(kGroupsDaysAgo);
        const auto groups = m_texts.hardGroups();
        return std::all_of(groups.begin(), groups.end(), [&](const DRSampleGroup& group) {
            return m_groups.insertGroup(group, moment += kSecondsPerDay);
        });
    }

    [[nodiscard]] bool insertUsualGroups()
    {
        const int count = kGroupsPerScale * m_settings.scale;
        const qint64 start = daysAgo(kGroupsDaysAgo - 100);
        for (int number = 0; number < count; ++number) {
            if (!m_groups.insertGroup(usualGroup(number),
                                      start + number * kSecondsPerDay / 2 % (900 * kSecondsPerDay))) {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] DRSampleGroup usualGroup(int number)
    {
        DRSampleGroup group{.id = kFirstGroup + number, .members = {m_people.next(m_random)}};
        if (number % 4 == 3) {
            group.members += m_people.next(m_random);
        }
        for (int count = 0; count < kMessagesPerGroup; ++count) {
            group.messages.push_back(usualGroupMessage(static_cast<std::size_t>(number), group));
        }
        return group;
    }

    [[nodiscard]] DRSampleGroupMessage usualGroupMessage(std::size_t language, const DRSampleGroup& group)
    {
        const bool isSent = oneIn(2, m_random);
        DRSampleGroupMessage message{.text = m_texts.compose(language, m_random),
                                     .flags = isSent ? 3 : 2,
                                     .sender = m_random.below(static_cast<int>(group.members.size())),
                                     .isForEach = isSent && group.members.size() > 1,
                                     .secondsLater = m_random.below(90'000)};
        if (!message.isForEach && oneIn(kMessagesPerGroup, m_random)) {
            message.pieces.push_back(
                {.part = 0, .type = u"text/plain"_s, .data = message.text, .location = {}, .kind = {}, .path = {}});
            message.pieces.push_back({.part = 1,
                                      .type = u"image/jpeg"_s,
                                      .data = {},
                                      .location = u"IMG.jpg"_s,
                                      .kind = u"jpeg"_s,
                                      .path = {}});
            message.text = QString();
        }
        return message;
    }

    [[nodiscard]] bool insertHardChats()
    {
        qint64 moment = daysAgo(kHardChatsDaysAgo);
        const auto chats = m_texts.hardChats();
        return std::all_of(chats.begin(), chats.end(),
                           [&](const DRSampleChat& chat) { return insertWhole(chat, moment += kSecondsPerDay); });
    }

    [[nodiscard]] bool insertWhole(const DRSampleChat& chat, qint64 moment)
    {
        const auto inserted = m_chats.insertChat(chat);
        return inserted && std::all_of(chat.messages.begin(), chat.messages.end(), [&](const DRSampleMessage& message) {
                   moment += message.secondsLater;
                   return m_chats.insertMessage(*inserted, message, moment);
               });
    }

    [[nodiscard]] bool openUsualChats()
    {
        const int count = kChatsPerScale * m_settings.scale;
        for (int number = 0; number < count; ++number) {
            const auto chat = m_chats.insertChat(usualChat(number));
            if (!chat) {
                return false;
            }
            m_open.push_back(*chat);
        }
        return true;
    }

    [[nodiscard]] DRSampleChat usualChat(int number)
    {
        const QString service = oneIn(3, m_random) ? u"SMS"_s : u"iMessage"_s;
        DRSampleChat chat{.identifier = m_people.next(m_random), .service = service, .handles = {}};
        chat.handles.push_back({.id = chat.identifier, .service = service});
        if (number % 6 == 4) {
            chat.identifier = u"chat7000%1"_s.arg(number, 6, 10, QChar(u'0'));
            for (int others = 1 + m_random.below(3); others > 0; --others) {
                chat.handles.push_back({.id = m_people.next(m_random), .service = service});
            }
        }
        return chat;
    }

    /// Now one chat, now another, as life goes; now and then a message arrives late.
    [[nodiscard]] bool insertUsualMessages()
    {
        const qint64 count = qint64{kMessagesPerScale} * m_settings.scale;
        const qint64 span = (kDaysOfChats * kSecondsPerDay);
        for (qint64 left = count; left > 0; --left) {
            const int range = 1 + m_random.below(static_cast<int>(m_open.size()));
            const auto place = static_cast<std::size_t>(m_random.below(range)); // the first ones are the liveliest
            const qint64 late = oneIn(50, m_random) ? kLateSeconds : 0;
            const qint64 moment = daysAgo(0) - span * left / count - late;
            if (!m_chats.insertMessage(m_open[place], usualMessage(place), moment)) {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] DRSampleMessage usualMessage(std::size_t place)
    {
        DRSampleMessage message{.text = m_texts.compose(place, m_random), .isFromMe = oneIn(2, m_random)};
        if (!message.isFromMe) {
            message.sender = m_random.below(static_cast<int>(m_open[place].handleIds.size()));
        }
        if (oneIn(kMessagesPerScale / 35, m_random)) {
            message.text = oneIn(2, m_random) ? u"\uFFFC"_s : u"\uFFFC"_s + message.text;
            message.attachments.push_back(usualAttachment());
        }
        return message;
    }

    [[nodiscard]] DRSampleAttachment usualAttachment()
    {
        const auto& kind = DRSampleAttachments::kind(m_random.pick(kUsualKinds));
        const QString name = u"IMG_%1."_s.arg(m_random.below(10'000), 4, 10, QChar(u'0')) + kind.extension.toString();
        return {.kind = kind.name.toString(), .name = name, .root = u"~/"_s, .mimeType = {}};
    }

    const DRSampleSettings& m_settings;
    DRSampleMessageTexts m_texts;
    DRSampleRandom m_random{kSeed};
    People m_people;
    DRSampleGroupTables m_groups;
    DRSampleChatTables m_chats;
    std::vector<DRSampleChatTables::Chat> m_open;
};

} // namespace

bool addIPhoneMessages(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings)
{
    DRSampleAttachments attachments(backup);
    const auto rows = [&](DRDatabase& database) { return Composer(database, attachments, settings).run(); };
    return backup.addDatabase({.domain = u"HomeDomain"_s, .path = u"Library/SMS/sms.db"_s},
                              {u"iphone_messages"_s, u"iphone_messages_groups"_s}, rows);
}
