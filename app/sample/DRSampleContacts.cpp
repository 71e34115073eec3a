#include "app/sample/DRSampleContacts.h"

#include "app/sample/DRSampleAddressBook.h"
#include "app/sample/DRSampleCalls.h"
#include "app/sample/DRSampleIPhoneBackup.h"
#include "app/sample/DRSamplePersonTexts.h"
#include "app/sample/DRSamplePicture.h"
#include "platform/sqlite/DRDatabase.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Picture = DRSamplePerson::Picture;

constexpr quint64 kSeed = 20140611;
constexpr int kPeoplePerScale = 120;
constexpr std::size_t kMostCallees = 300;
constexpr int kThumbnailSide = 55;

/// What the other two databases need to know of the people.
struct Directory {
    struct Portrait {
        qint64 personId;
        Picture kind;
    };

    std::vector<Portrait> portraits;
    std::vector<DRSampleCallee> callees;
};

QString firstText(const DRSamplePerson& person, int property)
{
    const auto found = std::find_if(person.values.begin(), person.values.end(),
                                    [property](const auto& value) { return value.property == property; });
    return found == person.values.end() ? QString() : found->text;
}

void enter(Directory& directory, qint64 personId, const DRSamplePerson& person)
{
    if (person.picture != Picture::None) {
        directory.portraits.push_back({.personId = personId, .kind = person.picture});
    }
    const QString number = firstText(person, DRSampleProperty::kPhones);
    if (!number.isNull() && directory.callees.size() < kMostCallees) {
        directory.callees.push_back(
            {.personId = personId, .number = number, .email = firstText(person, DRSampleProperty::kEmails)});
    }
}

bool insertPeople(DRDatabase& database, const DRSampleSettings& settings, Directory& directory)
{
    const DRSamplePersonTexts texts;
    const std::vector<DRSamplePerson> hardPeople = texts.hardPeople();
    DRSampleAddressBook addressBook(database, settings, texts.labels(), texts.keys());
    DRSampleRandom random(kSeed);
    const std::size_t count = static_cast<std::size_t>(kPeoplePerScale) * static_cast<std::size_t>(settings.scale);
    for (std::size_t index = 0; index < count; ++index) {
        const DRSamplePerson person = index < hardPeople.size() ? hardPeople[index] : texts.compose(random);
        const auto personId = static_cast<qint64>(index) + 1;
        enter(directory, personId, person);
        if (!addressBook.insert(personId, person)) {
            return false;
        }
    }
    return addressBook.finish();
}

/// A few pictures, which people share in large samples: making them takes longer than writing them.
class Gallery {
public:
    struct Item {
        QByteArray picture;
        QByteArray thumbnail;
        qint64 side = 0; ///< pixels of the picture
    };

    Gallery()
    {
        for (quint64 seed = 0; seed < kJpegCount; ++seed) {
            m_jpegs.push_back(item(seed, sampleJpeg));
        }
        for (quint64 seed = 0; seed < kPngCount; ++seed) {
            m_pngs.push_back(item(kJpegCount + seed, samplePng));
        }
    }

    [[nodiscard]] const Item& item(Picture kind, std::size_t number) const
    {
        const auto& items = kind == Picture::Png ? m_pngs : m_jpegs;
        return items[number % items.size()];
    }

private:
    static constexpr quint64 kJpegCount = 17;
    static constexpr quint64 kPngCount = 5;

    using Paint = QByteArray (*)(quint64 seed, int width, int height);
    static Item item(quint64 seed, Paint paint)
    {
        const int side = 160 + 40 * static_cast<int>(seed % 6);
        return {.picture = paint(seed, side, side),
                .thumbnail = sampleJpeg(seed, kThumbnailSide, kThumbnailSide),
                .side = side};
    }

    std::vector<Item> m_jpegs;
    std::vector<Item> m_pngs;
};

bool insertPictures(DRDatabase& database, const std::vector<Directory::Portrait>& portraits)
{
    const Gallery gallery;
    DRStatement insertFull = database.prepare(u"INSERT INTO ABFullSizeImage (record_id, crop_x, crop_y, crop_width, "
                                              "data) VALUES (?, 0, 0, ?, ?)"_s);
    DRStatement insertThumbnail = database.prepare(
        u"INSERT INTO ABThumbnailImage (record_id, format, derived_from_format, data) VALUES (?, 0, 0, ?)"_s);
    std::size_t number = 0;
    return std::all_of(portraits.begin(), portraits.end(), [&](const Directory::Portrait& portrait) {
        const Gallery::Item& item = gallery.item(portrait.kind, number++);
        return insertFull.update({portrait.personId, item.side, item.picture}) &&
               insertThumbnail.update({portrait.personId, item.thumbnail});
    });
}

} // namespace

bool addIPhoneContacts(DRSampleIPhoneBackup& backup, const DRSampleSettings& settings)
{
    Directory directory;
    const auto people = [&](DRDatabase& database) { return insertPeople(database, settings, directory); };
    const auto pictures = [&](DRDatabase& database) { return insertPictures(database, directory.portraits); };
    return backup.addDatabase({.domain = u"HomeDomain"_s, .path = u"Library/AddressBook/AddressBook.sqlitedb"_s},
                              {u"iphone_address_book"_s}, people) &&
           backup.addDatabase({.domain = u"HomeDomain"_s, .path = u"Library/AddressBook/AddressBookImages.sqlitedb"_s},
                              {u"iphone_address_book_images"_s}, pictures) &&
           addIPhoneCalls(backup, settings, directory.callees);
}
