#include "platform/contacts/DRContactDate.h"
#include "platform/contacts/DRCSContact.h"
#include "platform/contacts/DRGDataConstants.h"
#include "tests/platform/contacts/DRVCardReading.h"
#include "tests/support/DRTestTable.h"

using namespace Qt::StringLiterals;
using namespace DRGData;

namespace {

const QString kOther = kGDataContactOther;

GDataNameElement element(const QString& text, const QString& yomi = {})
{
    return {.stringValue = text, .yomi = yomi};
}

/// A contact with one element, added by the given operation.
template <typename Element> DRCSContact with(void (DRCSContact::*add)(const Element&), const Element& element)
{
    DRCSContact contact;
    (contact.*add)(element);
    return contact;
}

/// What the card says beyond the frame and the name.
QStringList linesOf(const DRCSContact& contact)
{
    QStringList lines = DRVCardReading::unfolded(contact.vCardRepresentation());
    for (const auto& frame : {"BEGIN:VCARD"_L1, "VERSION:3.0"_L1, "N:;;;;"_L1, "FN:"_L1, "END:VCARD"_L1}) {
        lines.removeOne(frame);
    }
    return lines;
}

QDateTime noon(int year, int month, int day)
{
    return {QDate(year, month, day), QTime(12, 0), Qt::UTC};
}

/// Fifteen columns of Android's, of which the first are given.
QString custom(const QString& kind, QStringList columns)
{
    columns.resize(15);
    return u"X-ANDROID-CUSTOM:vnd.android.cursor.item/"_s + kind + u';' + columns.join(u';');
}

DRCSContact contactFullOf(const QString& text)
{
    DRCSContact contact;
    const GDataNameElement name = element(text, text);
    contact.setName({name, name, name, text, text});
    contact.setBirthday(text);
    contact.setNickname(text);
    contact.addJot({.rel = text, .value = text});
    contact.addOrganization({text, text, text});
    contact.addPhoneNumber({text, {}, text});
    contact.addPhoneNumber({.stringValue = u"VCARD"_s, .label = u"BEGIN"_s});
    contact.addEmailAddress({text, text, text});
    contact.addStructuredPostalAddress({text, text, text, text, text, text, {}, text});
    contact.addEvent({.when = {noon(1980, 1, 1), {}}, .rel = {}, .label = text});
    contact.addIMAddress({text, text, {}, text});
    contact.addIMAddress({kGDataIMProtocolSkype, text, {}, text});
    contact.addWebsiteLink({text, {}, text});
    contact.addRelation({text, {}, text});
    return contact;
}

/// Rows of contacts with one element each and the lines that it becomes, parted by "|"; none for an empty text.
template <typename Element>
void addRows(const char* name,
             void (DRCSContact::*add)(const Element&),
             const std::vector<std::pair<Element, QString>>& table)
{
    for (const auto& [element, lines] : table) {
        QTest::addRow("%s %s", name, qPrintable(lines)) << with(add, element) << lines;
    }
}

void addPhones()
{
    addRows<GDataPhoneNumber>("phone", &DRCSContact::addPhoneNumber,
                              {{{u"+1"_s, kGDataPhoneNumberWork}, u"TEL;TYPE=WORK:+1"_s},
                               {{u"+1"_s, kGDataPhoneNumberHome, u"ignored"_s}, u"TEL;TYPE=HOME:+1"_s},
                               {{u"+1"_s, kGDataPhoneNumberMobile}, u"TEL;TYPE=CELL:+1"_s},
                               {{u"+1"_s, kGDataPhoneNumberMain}, u"TEL;TYPE=PREF:+1"_s},
                               {{u"+1"_s, kGDataPhoneNumberHomeFax}, u"TEL;TYPE=HOME,FAX:+1"_s},
                               {{u"+1"_s, kGDataPhoneNumberWorkFax}, u"TEL;TYPE=WORK,FAX:+1"_s},
                               {{u"+1"_s, kGDataPhoneNumberPager}, u"TEL;TYPE=PAGER:+1"_s},
                               {{u"+1"_s, kGDataContactOther}, u"TEL;TYPE=OTHER:+1"_s},
                               {{u"+1"_s}, u"TEL;TYPE=VOICE:+1"_s},
                               {{u"+1"_s, {}, u""_s}, u"TEL;TYPE=VOICE:+1"_s},
                               {{u"1,2;3#"_s, {}, u"_$!<Radio>!$_"_s}, u"TEL;TYPE=X-Radio:1p2w3#"_s},
                               {{u"+1"_s, {}, u"_$!<!$_"_s}, u"TEL;TYPE=\"X-_$!<!$_\":+1"_s},
                               {{u"+1"_s, {}, u"Sea, side"_s}, u"TEL;TYPE=\"X-Sea, side\":+1"_s},
                               {{u""_s, {}, u"empty"_s}, {}}});
}

void addEmails()
{
    addRows<GDataEmail>("e-mail", &DRCSContact::addEmailAddress,
                        {{{u"a@b"_s, kGDataContactHome}, u"EMAIL;TYPE=HOME:a@b"_s},
                         {{u"a@b"_s, kGDataContactWork}, u"EMAIL;TYPE=WORK:a@b"_s},
                         {{u"a@b"_s, kGDataPhoneNumberMobile}, u"EMAIL;TYPE=CELL:a@b"_s},
                         {{u"a@b"_s, kGDataPhoneNumberMain}, u"EMAIL;TYPE=X-Main:a@b"_s},
                         {{u"a@b"_s, kGDataPhoneNumberWorkFax}, u"EMAIL;TYPE=\"X-Work Fax\":a@b"_s},
                         {{u"a@b"_s, kGDataContactOther}, u"EMAIL:a@b"_s},
                         {{u"a@b"_s, {}, u"Büro"_s}, u"EMAIL;TYPE=X-Büro:a@b"_s},
                         {{}, {}}});
}

void addAddresses()
{
    addRows<GDataStructuredPostalAddress>(
        "address", &DRCSContact::addStructuredPostalAddress,
        {{{u"1 A St\nFlat 2"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s, u"de"_s, kGDataContactHome},
          u"ADR;TYPE=HOME:;;1 A St\\nFlat 2;B;C;D;E"_s},
         {{{}, {}, {}, {}, {}, u"de"_s, kGDataContactWork}, u"ADR;TYPE=WORK:;;;;;;DE"_s},
         {{{}, u"B"_s, {}, {}, {}, {}, kOther}, u"ADR;TYPE=OTHER:;;;B;;;"_s},
         {{{}, u"B"_s, {}, {}, {}, {}, kOther, u"Summer"_s}, u"ADR;TYPE=X-Summer:;;;B;;;"_s},
         {{{}, u"B"_s, {}, {}, {}, {}, kGDataPhoneNumberPager}, u"ADR;TYPE=X-Pager:;;;B;;;"_s},
         {{{}, u""_s, {}, {}, {}, {}, kOther, u"empty"_s}, {}}});
}

void addEvents()
{
    const GDataWhen day{noon(2001, 2, 3), noon(2001, 2, 3)};
    addRows<GDataContactEvent>(
        "event", &DRCSContact::addEvent,
        {{{day, kGDataContactEventAnniversary}, custom(u"contact_event"_s, {u"2001-02-03"_s, u"1"_s})},
         {{day, kGDataContactEventOther}, custom(u"contact_event"_s, {u"2001-02-03"_s, u"2"_s})},
         {{day, kGDataContactHome}, custom(u"contact_event"_s, {u"2001-02-03"_s, u"0"_s, u"Home"_s})},
         {{{noon(1604, 2, 29), {}}, kGDataContactEventOther, u"_$!<Anniversary>!$_"_s},
          custom(u"contact_event"_s, {u"--02-29"_s, u"0"_s, u"Anniversary"_s})},
         {{{}, kGDataContactEventAnniversary}, {}}});
}

void addAccounts()
{
    addRows<GDataIM>(
        "account", &DRCSContact::addIMAddress,
        {{{kGDataIMProtocolAIM, u"me"_s, kGDataContactHome}, u"X-AIM;TYPE=HOME:me"_s},
         {{kGDataIMProtocolGoogleTalk, u"me"_s, kOther}, u"X-GOOGLE-TALK:me"_s},
         {{kGDataIMProtocolICQ, u"me"_s, kGDataContactWork}, u"X-ICQ;TYPE=WORK:me"_s},
         {{kGDataIMProtocolJabber, u"me"_s}, u"X-JABBER:me"_s},
         {{kGDataIMProtocolMSN, u"me"_s}, u"X-MSN:me"_s},
         {{kGDataIMProtocolNetMeeting, u"me"_s}, u"X-NETMEETING:me"_s},
         {{kGDataIMProtocolQQ, u"me"_s}, u"X-QQ:me"_s},
         {{kGDataIMProtocolSkype, {}, kOther, u"Fun"_s}, u"X-SKYPE-USERNAME;TYPE=X-Fun:"_s},
         {{kGDataIMProtocolYahoo, u"me"_s}, u"X-YAHOO:me"_s},
         {{u"Face"_s, u"me"_s, kGDataContactHome}, custom(u"im"_s, {u"me"_s, u"1"_s, {}, {}, u"-1"_s, u"Face"_s})},
         {{u"Face"_s, {}, kOther, u"Fun"_s}, custom(u"im"_s, {{}, u"0"_s, u"Fun"_s, {}, u"-1"_s, u"Face"_s})},
         {{{}, u"me"_s, kOther}, custom(u"im"_s, {u"me"_s, u"3"_s, {}, {}, u"-1"_s})},
         {{{}, {}, kOther, u"empty"_s}, {}}});
}

void addLinks()
{
    addRows<GDataContactWebsiteLink>(
        "link", &DRCSContact::addWebsiteLink,
        {{{u"http://a/?b=c;d,e"_s, kGDataContactHome}, u"URL;TYPE=HOME:http://a/?b=c\\;d\\,e"_s},
         {{u"a"_s, kGDataContactWebsiteLinkWork}, u"URL;TYPE=WORK:a"_s},
         {{u"a"_s, {}, u"_$!<HomePage>!$_"_s}, u"URL;TYPE=X-HomePage:a"_s},
         {{u"a"_s}, u"URL:a"_s}});
}

void addRelations()
{
    addRows<GDataContactRelation>(
        "relation", &DRCSContact::addRelation,
        {{{u"Bo"_s, kGDataContactRelationSpouse}, custom(u"relation"_s, {u"Bo"_s, u"14"_s})},
         {{u"Bo"_s, kOther, u"_$!<Mother>!$_"_s}, custom(u"relation"_s, {u"Bo"_s, u"0"_s, u"Mother"_s})},
         {{u"Bo"_s, kGDataContactWork}, custom(u"relation"_s, {u"Bo"_s, u"0"_s, u"Work"_s})},
         {{u"Bo"_s, u"referred-by"_s}, custom(u"relation"_s, {u"Bo"_s, u"0"_s, u"referred-by"_s})},
         {{u"Bo"_s, kOther}, custom(u"relation"_s, {u"Bo"_s, u"0"_s})}});
}

void addOrganizationsAndTexts()
{
    addRows<GDataOrganization>("organization", &DRCSContact::addOrganization,
                               {{{u"A; B"_s, u"CEO"_s, u"R&D"_s}, u"ORG:A\\; B;R&D|TITLE:CEO"_s},
                                {{u""_s}, u"ORG:"_s},
                                {{{}, u"CEO"_s}, u"TITLE:CEO"_s},
                                {{{}, {}, u"R&D"_s}, u"ORG:;R&D"_s}});
    addRows<GDataContactJot>("jot", &DRCSContact::addJot, {{{kGDataContactJotUser, u"a\r\nb"_s}, u"NOTE:a\\nb"_s}});
    addRows<QString>("nickname", &DRCSContact::setNickname, {{u"B,o"_s, u"NICKNAME:B\\,o"_s}});
    addRows<QString>("birthday", &DRCSContact::setBirthday, {{u"--02-29"_s, u"BDAY:--02-29"_s}});
}

} // namespace

class TestContact : public QObject {
    Q_OBJECT

private Q_SLOTS:

    static void initTestCase() { qputenv("TZ", "Asia/Kathmandu"); }

    void rendersNames_data()
    {
        const DRTestTable<GDataName, QStringList> row("name", "lines");
        row("none", {}, {u"N:;;;;"_s, u"FN:"_s});
        row("all", {element(u"Ann"_s), element(u"Lee; jr"_s), element(u"M,"_s), u"Dr."_s, u"PhD"_s},
            {u"N:Lee\\; jr;Ann;M\\,;Dr.;PhD"_s, u"FN:Dr. Ann M\\, Lee\\; jr PhD"_s});
        row("stored empty", {element(u""_s), element(u"Lee"_s)}, {u"N:Lee;;;;"_s, u"FN:Lee"_s});
        row("Japanese", {element(u"はな"_s, u"hana"_s), element(u"山田"_s, u"yamada"_s), {}, u"Dr."_s, u"様"_s},
            {u"N:山田;はな;;Dr.;様"_s, u"FN:Dr. 山田 はな 様"_s, u"X-PHONETIC-FIRST-NAME:hana"_s,
             u"X-PHONETIC-LAST-NAME:yamada"_s});
        row("Chinese", {element(u"明"_s), element(u"王"_s), element(u"小"_s, u"xiao"_s)},
            {u"N:王;明;小;;"_s, u"FN:王小明"_s, u"X-PHONETIC-MIDDLE-NAME:xiao"_s});
        row("Korean", {element(u"민수"_s), element(u"김"_s)}, {u"N:김;민수;;;"_s, u"FN:김민수"_s});
        row("rare Han", {element(u"Li"_s), element(u"𠮷"_s)}, {u"N:𠮷;Li;;;"_s, u"FN:𠮷Li"_s});
    }

    void rendersNames()
    {
        QFETCH(GDataName, name);
        QStringList lines = DRVCardReading::unfolded(with(&DRCSContact::setName, name).vCardRepresentation());
        QCOMPARE(lines.mid(0, 2), (QStringList{u"BEGIN:VCARD"_s, u"VERSION:3.0"_s}));
        QCOMPARE(lines.takeLast(), u"END:VCARD"_s);
        QTEST(lines.mid(2), "lines");
    }

    void rendersElements_data()
    {
        QTest::addColumn<DRCSContact>("contact");
        QTest::addColumn<QString>("lines");
        addPhones();
        addEmails();
        addAddresses();
        addEvents();
        addAccounts();
        addLinks();
        addRelations();
        addOrganizationsAndTexts();
    }

    void rendersElements()
    {
        QFETCH(DRCSContact, contact);
        QTEST(linesOf(contact).join(u'|'), "lines");
    }

    void pictureGoesAlongOnlyWhenWanted()
    {
        DRCSContact contact = with(&DRCSContact::setImage, QByteArray("\xFF\xD8\xFF"));
        QCOMPARE(linesOf(contact), QStringList());
        contact.setShouldUploadImage(true);
        QCOMPARE(linesOf(contact), QStringList{u"PHOTO;ENCODING=b;TYPE=JPEG:/9j/"_s});
    }

    void columnsSurviveBothPassesOfAndroid()
    {
        const QString name = u"a;b\\;c\\nd,e\nf\\"_s;
        const QString line = linesOf(with(&DRCSContact::addRelation, {name, {}, u";\\"_s})).value(0);
        const QString value = DRVCardReading::unescaped(line.sliced(line.indexOf(u':') + 1)).value(0);
        const QStringList columns = DRVCardReading::unescaped(value, u';');
        QCOMPARE(columns.size(), 16);
        QCOMPARE(columns.mid(1, 4), (QStringList{name, u"0"_s, u";\\"_s, {}}));
    }

    void hostileTextsStayInsideTheirCard()
    {
        for (const QString& text :
             {u"BEGIN:VCARD"_s, u"\r\nEND:VCARD\r\nBEGIN:VCARD\r\nFN:x\r\n"_s, u"\"\nend:vcard;TYPE=\":begin:vcard"_s,
              QString(QChar(0xdc00)) + u"END:VCARD\u2028END:VCARD\u0085BEGIN:VCARD"_s,
              u"\u0001BEGIN\u0001:VCARD EN\u0000D:VCARD"_s, u"山"_s.repeated(24) + u"END:VCARD"_s}) {
            const QByteArray card = contactFullOf(text).vCardRepresentation();
            QVERIFY(card.isValidUtf8());
            QVERIFY(!card.contains('\0'));
            QVERIFY(DRVCardReading::longestLine(card) <= 75);
            QCOMPARE(card.toUpper().count("BEGIN:VCARD"), 1);
            QCOMPARE(card.toUpper().count("END:VCARD"), 1);
            QCOMPARE(DRVCardReading::unfolded(card).size(), 22);
        }
    }

    void dates_data()
    {
        const DRTestTable<QDateTime, QString> row("date", "text");
        row("no year", noon(1604, 2, 29), u"--02-29"_s);
        row("last without year", noon(1799, 12, 31), u"--12-31"_s);
        row("first with year", noon(1800, 1, 1), u"1800-01-01"_s);
        row("local day", QDateTime(QDate(1980, 5, 6), QTime(18, 45), Qt::UTC), u"1980-05-07"_s);
        row("local year", QDateTime(QDate(1799, 12, 31), QTime(18, 45), Qt::UTC), u"1800-01-01"_s);
        row("invalid", {}, {});
        row("beyond all dates", QDateTime::fromMSecsSinceEpoch(std::numeric_limits<qint64>::max(), Qt::UTC),
            u"9998-12-30"_s);
        row("before all dates", QDateTime::fromMSecsSinceEpoch(std::numeric_limits<qint64>::min(), Qt::UTC),
            u"--01-02"_s);
    }

    void dates()
    {
        QFETCH(QDateTime, date);
        QTEST(contactDateText(date), "text");
    }

    void displayNameTakesTheFirstThatIsThere()
    {
        DRCSContact contact;
        QCOMPARE(contact.displayName(), QString());
        contact.addPhoneNumber({u""_s});
        contact.addPhoneNumber({u"+1"_s});
        QCOMPARE(contact.displayName(), u"+1"_s);
        contact.addEmailAddress({u"a@b"_s});
        QCOMPARE(contact.displayName(), u"a@b"_s);
        contact.setNickname(u"Bo"_s);
        QCOMPARE(contact.displayName(), u"Bo"_s);
        contact.addOrganization({.orgTitle = u"CEO"_s});
        contact.addOrganization({.orgName = u"Firm"_s});
        QCOMPARE(contact.displayName(), u"Firm"_s);
        contact.setName({.familyName = element(u"Lee"_s)});
        QCOMPARE(contact.displayName(), u"Lee"_s);
    }
};

QTEST_APPLESS_MAIN(TestContact)
#include "TestContact.moc"
