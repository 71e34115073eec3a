#include "convert/messages/DRAndroidMessageReader.h"
#include "convert/messages/DRMessagesTemplate.h"
#include "convert/messages/DRMigrateAndroidMessages.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/convert/DRConverterFixture.h"
#include "tests/support/DRTestTable.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

const QString kPacketID = u"com.android.providers.telephony"_s;

/// A data type that holds one chat, as the reader leaves it.
class Source final : public DRMigrateDataType {
public:
    Source(const DRMigrateServices& services, const DRImportedChat& chat) : DRMigrateDataType(services)
    {
        setEntries(DREntryList{chat});
    }
};

} // namespace

/// What the phone's side writes is read back.
class TestAndroidMessageReader : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<DRConverterFixture> m_test;

    /// Merges text messages of two moments and one with an attachment; `inApp("db/mmssms.db")` and `inApp("r")` are there then.
    [[nodiscard]] bool merge() const
    {
        const auto at = [](qint64 milliseconds) { return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC); };
        const DRIMessageAttachment picture{
            .mimeType = u"image/jpeg"_s, .filename = u"a b.jpg"_s, .path = m_test->path(u"picture"_s), .sizeBytes = 7};
        const auto phone = m_test->phoneSide<DRMigrateAndroidMessages>();
        return writeFile(picture.path, "picture") && writeEmptyMessagesDatabase(m_test->inApp(u"db/mmssms.db"_s)) &&
               phone->mergeDataFrom(Source(
                   m_test->test.services,
                   {.recipients = {u"5"_s},
                    .messages = {{.address = u"5"_s, .text = u"It's"_s, .date = at(-1)},
                                 {.address = u"5"_s, .text = u"lost"_s, .date = at(3000), .attachments = {picture}},
                                 {.isFromMe = true, .address = u"5"_s, .text = {}, .date = at(1'400'000'001'999)}}}));
    }

private Q_SLOTS:

    void whatIsWrittenIsReadBack_data()
    {
        // place: what `_data` of the part is set to, with the stored name for %1
        const DRTestTable<QString, bool> row("place", "isFound");
        const QString app = u"/data/data/"_s + kPacketID;
        row("as written", {}, true);
        row("elsewhere on the phone", u"/data/user/0//"_s + kPacketID + u"/app_parts/%1"_s, true);
        row("of another app", u"/data/data/other/app_parts/%1"_s, false);
        row("missing file", app + u"/app_parts/%1x"_s, false);
        row("a folder", app + u"/app_parts"_s, false);
        row("the app itself", app, false);
        row("out of the packet", app + u"/../db/mmssms.db"_s, false);
        row("and in again", app + u"/app_parts/../app_parts/%1"_s, false);
        row("a link", app + u"/link"_s, false);
        row("below a link", app + u"/folder/mmssms.db"_s, false);
    }

    void whatIsWrittenIsReadBack()
    {
        QFETCH(const QString, place);
        QFETCH(const bool, isFound);
        m_test = std::make_unique<DRConverterFixture>(kPacketID);
        QVERIFY(merge());
        const QString name = QDir(m_test->inApp(u"r/app_parts"_s)).entryList(QDir::Files).value(0);
        QVERIFY(QFile::link(m_test->inApp(u"r/app_parts/"_s + name), m_test->inApp(u"r/link"_s)));
        QVERIFY(QFile::link(m_test->inApp(u"db"_s), m_test->inApp(u"r/folder"_s)));
        auto database = DRDatabase::open(m_test->inApp(u"db/mmssms.db"_s), DRDatabase::Profile::Phone);
        QVERIFY(database);
        if (!place.isNull()) {
            const QString data = place.contains(u"%1"_s) ? place.arg(name) : place;
            QVERIFY(database->executeUpdate(u"UPDATE part SET _data=? WHERE _data IS NOT NULL"_s, {data}));
        }

        const DRAndroidMessageReader reader(m_test->inApp(u""_s), kPacketID, *database);
        const auto message = [](const QString& text, qint64 seconds) {
            return DRImportedMessage{
                .isFromMe = true, .text = text, .date = QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC)};
        };
        // Texts of multimedia messages stand among their parts, which are not looked at.
        DRImportedChat expected{.serviceName = u"SMS"_s,
                                .recipients = {u"5"_s},
                                .messages = {message(u"It's"_s, 0), message({}, 1'400'000'001), message({}, 3)}};
        if (isFound) {
            expected.messages.back().attachments = {{.uti = u"image/jpeg"_s,
                                                     .filename = u"a b.jpg"_s,
                                                     .path = m_test->inApp(u"r/app_parts/"_s + name),
                                                     .sizeBytes = 7}};
        }
        const DRImportedChat chat = reader.importChatWithAndroidDatabase(1, {u"5"_s}, u"SMS"_s);
        QVERIFY(chat == expected);
        QVERIFY(reader.importChatWithAndroidDatabase(2, {}, {}).messages.empty());
    }
};

QTEST_GUILESS_MAIN(TestAndroidMessageReader)
#include "TestAndroidMessageReader.moc"
