#include "tests/support/DRTestTable.h"
#include "tests/wizard/DRTextTables.h"
#include "tests/wizard/WizardFixture.h"
#include "wizard/DRDateText.h"
#include "wizard/DRMGHtml.h"
#include "wizard/DRMGStepKeys.h"
#include "wizard/steps/DRMGSequenceStepComplete.h"
#include "wizard/steps/DRMGSequenceStepConnectPhone.h"
#include "wizard/steps/DRMGSequenceStepMemoryWarning.h"
#include "wizard/steps/DRMGSequenceStepPhoneIncompatible.h"
#include "wizard/steps/DRMGSequenceStepSelectBackup.h"
#include "wizard/steps/DRMGSequenceStepSelectData.h"
#include "wizard/steps/DRMGSequenceStepWelcome.h"

#include <functional>

using namespace Qt::StringLiterals;

namespace {

using Reason = DRMGSequenceStepNewBackupNeeded::Reason;
using Read = std::function<QString(WizardFixture&)>;
using Texts = DRTestTable<Read, QString>;

template <typename Step> Step& step(const WizardFixture& f, const QString& key)
{
    return *qobject_cast<Step*>(f.sequence->stepForKey(key));
}

QString described(const std::optional<DRMGTooltip>& tooltip)
{
    return tooltip ? u"%1x%2 "_s.arg(tooltip->size.width()).arg(tooltip->size.height()) + tooltip->html : u"none"_s;
}

/// The accessor of a step as it stands in a new wizard.
template <typename Step> Read text(const QString& key, QString (Step::*accessor)() const)
{
    return [=](WizardFixture& f) { return (step<Step>(f, key).*accessor)(); };
}

Read tooltip(const QString& key, const QString& link)
{
    return [=](WizardFixture& f) { return described(step<DRMGSequenceStep>(f, key).tooltipForLink(link)); };
}

Read needed(Reason reason, QString (DRMGSequenceStepNewBackupNeeded::*accessor)() const)
{
    return [=](WizardFixture& f) {
        auto& page = step<DRMGSequenceStepNewBackupNeeded>(f, DRMGStepKeys::kNewBackupNeeded);
        page.setBackupNeededReason(reason);
        return (page.*accessor)();
    };
}

Read complete(int errorState, QString (DRMGSequenceStepComplete::*accessor)() const)
{
    return [=](WizardFixture& f) {
        auto& page = step<DRMGSequenceStepComplete>(f, DRMGStepKeys::kComplete);
        page.setErrorState(static_cast<DRMGSequenceStepComplete::ErrorState>(errorState));
        f.sequence->parameters().setValue(DRMGSequence::kBackupName, u"<b>%ws"_s);
        return (page.*accessor)();
    };
}

/// The heading, and the name that the page goes by in usage events.
Read heading(const QString& key)
{
    return [=](WizardFixture& f) {
        const auto& page = step<DRMGSequenceStep>(f, key);
        return page.localizedTitle() + u' ' + page.analyticsPageViewComponents().join(u'/');
    };
}

void addHeadingRows(const Texts& row)
{
    using namespace DRMGStepKeys;
    row("heading of welcome", heading(kWelcome), u"IDD_STUDIO_IDC_HEADER welcome"_s);
    row("heading of select-backup", heading(kSelectBackup), u"IDD_STEPWIZ_SELECT_IPHONE_IDC_HEADER select-backup"_s);
    row("heading of select-data", heading(kSelectData), u"IDD_STEPWIZ_REVIEWDATA_IDC_HEADER select-data"_s);
    row("heading of transfer", heading(kTransfer), u"IDD_STEPWIZ_TRANSFER_IDC_HEADER transfer"_s);
    row("heading of complete", heading(kComplete), u"IDD_STEPWIZ_FINISH_IDC_HEADER finished"_s);
    row("heading of new-backup-needed", heading(kNewBackupNeeded), u" backup-needed"_s);
    row("heading of connect-phone", heading(kConnectPhone), u"IDD_STEPWIZ_CONNECT_PHONE_IDC_HEADER connect-phone"_s);
    row("heading of memory-warning", heading(kMemoryWarning), u"IDD_STEPWIZ_OUT_OF_MEMORY_IDC_HEADER "_s);
    row("heading of phone-incompatible", heading(kPhoneIncompatible),
        u"IDD_STEPWIZ_INCOMPATIBLE_PHONE_IDC_HEADER phone-incompatible"_s);
}

void addWelcomeRows(const Texts& row)
{
    using namespace DRMGStepKeys;
    row("welcome", text(kWelcome, &DRMGSequenceStepWelcome::bodyHtml), u"IDD_STUDIO_IDC_TXT1 IDD_STUDIO_IDC_TXT2"_s);
    row("welcome, first step", text(kWelcome, &DRMGSequenceStepWelcome::firstStepHtml),
        u"<p style='margin-left:10px;text-indent:-10px'>IDD_STUDIO_IDC_TXT3<br />IDD_STUDIO_IDC_TXT4<br /><a href='1'>IDD_STUDIO_IDC_LINK1</a></p>"_s);
    row("welcome, second step", text(kWelcome, &DRMGSequenceStepWelcome::secondStepHtml),
        u"<p style='margin-left:10px;text-indent:-10px'>IDD_STUDIO_IDC_TXT6<br />IDD_STUDIO_IDC_TXT7<br /><a href='2'>IDD_STUDIO_IDC_LINK2</a></p>"_s);
    row("welcome, how to back up", tooltip(kWelcome, u"1"_s),
        u"400x600 <b>IDD_MOREINFO</b><br /><br />IDD_MOREINFO_IDC_TXT1<br /><br />IDD_MOREINFO_IDC_TXT2<br /><br />"
        "IDD_MOREINFO_IDC_TXT3<br /><br />IDD_MOREINFO_IDC_TXT6<br />IDD_MOREINFO_IDC_TXT7<br />"
        "IDD_MOREINFO_IDC_TXT8<br />IDD_MOREINFO_IDC_TXT9<br />IDD_MOREINFO_IDC_TXT10<br />"
        "IDD_MOREINFO_IDC_TXT11<br />IDD_MOREINFO_IDC_TXT12<br />IDD_MOREINFO_IDC_TXT13<br /><br />"
        "IDD_MOREINFO_IDC_TXT14<br /><br />IDD_MOREINFO_IDC_TXT15<br /><br />IDD_MOREINFO_IDC_TXT16<br />"_s);
    const QString phoneTooltip =
        u"400x200 <b>IDD_MOREINFO2</b><br /><br />IDD_MOREINFO2_IDC_TXT1<br /><br />IDD_MOREINFO2_IDC_TXT2<br /><br />"
        "IDD_MOREINFO2_IDC_TXT3"_s;
    row("welcome, what to set", tooltip(kWelcome, u"2"_s), phoneTooltip);
    row("welcome, any other link", tooltip(kWelcome, u"x"_s), phoneTooltip);
}

void addBackupRows(const Texts& row)
{
    using namespace DRMGStepKeys;
    using Needed = DRMGSequenceStepNewBackupNeeded;
    row("list", text(kSelectBackup, &DRMGSequenceStepSelectBackup::bodyHtml),
        u"IDD_STEPWIZ_SELECT_IPHONE_IDC_STATIC"_s);
    row("list, not shown", text(kSelectBackup, &DRMGSequenceStepSelectBackup::notShownHtml),
        u"<a href='1'>IDD_STEPWIZ_SELECT_IPHONE_IDC_BUBBLE</a>"_s);
    row("list, bullets", tooltip(kSelectBackup, u"1"_s), u"300x400 IDS_PHONE_BUBBLE • • • •"_s);

    row("missing", needed(Reason::NoBackup, &Needed::reasonHtml),
        u"@STATIC<br /><br />@TEXT1<br /><br />@TEXT2<br />@TEXT4<br />@TEXT6<br />@TEXT8"
        "<br /><br /><br />@TEXT9"_s.replace(u'@', u"IDD_STEPWIZ_ITUNESBACKUP_MISSING_IDC_"_s));
    row("encrypted", needed(Reason::Encrypted, &Needed::reasonHtml),
        u"@TEXT0<br /><br />@TEXT1<br /><br />@TEXT2<br />@TEXT4<br />@TEXT6<br />@TEXT8"
        "<br /><br />@TEXT9"_s.replace(u'@', u"IDD_STEPWIZ_ITUNESBACKUP_ENCRYPTED_IDC_"_s));
    row("too old", needed(Reason::SystemTooOld, &Needed::reasonHtml),
        u"@STATIC<br /><br />@TEXT1<br /><br />@TEXT9"_s.replace(u'@',
                                                                 u"IDD_STEPWIZ_ITUNESBACKUP_INCOMPATIBLE_IDC_"_s));
    row("no reason", needed(Reason::None, &Needed::reasonHtml), {});
    row("encrypted, note", needed(Reason::Encrypted, &Needed::noteHtml),
        u"IDD_STEPWIZ_ITUNESBACKUP_ENCRYPTED_IDC_TEXT10<br />IDD_STEPWIZ_ITUNESBACKUP_ENCRYPTED_IDC_TEXT11"_s);
    row("no reason, note", needed(Reason::None, &Needed::noteHtml), {});
}

void addSelectionRows(const Texts& row)
{
    using namespace DRMGStepKeys;
    row("data", text(kSelectData, &DRMGSequenceStepSelectData::bodyHtml),
        u"IDD_STEPWIZ_REVIEWDATA_IDC_STATIC<br />IDD_STEPWIZ_REVIEWDATA_IDC_STATIC_2"_s);
    row("data, old backup", tooltip(kSelectData, u"OldBackup"_s), u"400x260 IDS_TOO_OLD_BUBBLE"_s);
    row("data, other link", tooltip(kSelectData, u"1"_s), u"none"_s);
    row("storage", text(kMemoryWarning, &DRMGSequenceStepMemoryWarning::bodyHtml),
        u"IDD_STEPWIZ_OUT_OF_MEMORY_IDC_STATIC<br />IDD_STEPWIZ_OUT_OF_MEMORY_IDC_TEXT"_s);
    row("storage, next", text(kMemoryWarning, &DRMGSequenceStepMemoryWarning::pressNextHtml),
        u"IDD_STEPWIZ_OUT_OF_MEMORY_IDC_STATIC_2"_s);
}

void addClosingRows(const Texts& row)
{
    using Complete = DRMGSequenceStepComplete;
    row("done", complete(0, &Complete::bodyHtml),
        u"IDD_STEPWIZ_FINISH_IDC_STATIC<br />IDD_STEPWIZ_FINISH_IDC_STATIC_2"_s);
    row("done, note", complete(0, &Complete::noteHtml),
        u"IDD_STEPWIZ_FINISH_IDC_INFO_TXT<br />IDD_STEPWIZ_FINISH_IDC_STATIC_3<br />IDD_STEPWIZ_FINISH_IDC_BACKUP "
        "<a href = 'backup'><link> </link></a> &lt;b&gt;%ws"_s);
    row("done, image", complete(0, &Complete::imageName), u"tarvex_checkmark"_s);
    const QString failed = u"IDD_STEPWIZ_FINISH_FAILED_IDC_STATIC<br />IDD_STEPWIZ_FINISH_FAILED_IDC_RESTART<br />"
                           "IDD_STEPWIZ_FINISH_FAILED_IDC_LINK <a href = 'vorn'><link> </link></a>"_s;
    row("backup failed", complete(1, &Complete::bodyHtml), failed);
    row("restore failed", complete(2, &Complete::bodyHtml), failed);
    row("failed, image", complete(1, &Complete::imageName), u"tarvex_alert"_s);
    row("backup failed, note", complete(1, &Complete::noteHtml),
        u"IDD_STEPWIZ_FINISH_FAILED_IDC_INFO_TXT<br />IDD_STEPWIZ_FINISH_FAILED_IDC_NO_BACKUP"_s);
    row("restore failed, note", complete(2, &Complete::noteHtml),
        u"@INFO_TXT<br />@BACKUP_TXT1<br />@BACKUP <a href = 'backup'><link> </link></a> &lt;b&gt;%ws<br />"
        "@BACKUP_TXT2"_s.replace(u'@', u"IDD_STEPWIZ_FINISH_FAILED_IDC_"_s));
}

} // namespace

/// What the pages show, with every text replaced by its identifier.
class TestPageTexts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void texts_data()
    {
        const Texts row("read", "html");
        addHeadingRows(row);
        addWelcomeRows(row);
        addBackupRows(row);
        addSelectionRows(row);
        addClosingRows(row);
    }

    void texts()
    {
        QFETCH(const Read, read);
        WizardFixture f(DRTextTables::echoing());
        QTEST(read(f), "html");
    }

    void backupInfo_data()
    {
        const DRTestTable<std::optional<int>, QString> row("ageSeconds", "html"); // html: with "@" for the date
        const QString recent = u"IDS_BACKUP_DATE @"_s;
        row("new", std::optional(5), recent);
        row("30 days", std::optional(2592000), recent);
        row("one second more", std::optional(2592001),
            u"<span style='color:#e6c81e'>IDS_BACKUP_DATE_OLD @ <a href = 'oldbackup'><link> </link></a></span>"_s);
        row("from the future", std::optional(-9), recent);
        row("no date", {}, u"IDS_BACKUP_DATE wizard_date_unknown"_s);
    }

    void backupInfo()
    {
        QFETCH(const std::optional<int>, ageSeconds);
        QFETCH(QString, html);
        WizardFixture f(DRTextTables::echoing());
        const auto entry = f.makeEntry();
        const QDateTime made = ageSeconds ? f.clock.now().addSecs(-*ageSeconds) : QDateTime();
        entry->setLastBackupDate(made);
        f.sequence->parameters().setValue(DRMGSequence::kIPhoneBackupEntry, entry);
        const auto& page = step<DRMGSequenceStepSelectData>(f, DRMGStepKeys::kSelectData);
        QCOMPARE(page.backupInfoHtml(), html.replace(u'@', shortDateText(made)));
    }

    void backupRows()
    {
        WizardFixture f(DRTextTables::echoing());
        f.addBackup(u"old"_s, u"3.1"_s);
        f.addBackup(u"new"_s, u"4.0"_s);
        f.sequence->gotoStepForKey(DRMGStepKeys::kSelectBackup);
        const auto& page = step<DRMGSequenceStepSelectBackup>(f, DRMGStepKeys::kSelectBackup);
        QCOMPARE(page.row(0).name, u"new"_s);
        QCOMPARE(page.row(0).imageName, u"migrate_iphone_list"_s);
        QCOMPARE(page.row(0).date, shortDateText(QDateTime(QDate(2014, 5, 2), QTime(0, 0), Qt::UTC)));
        QCOMPARE(page.row(1).imageName, u"migrate_iphone_list_invalid"_s);
        QVERIFY(page.row(2).name.isNull() && page.row(-1).imageName.isNull());
        page.backupList().back()->setEncrypted(true);
        QVERIFY2(page.row(1).imageName == u"migrate_iphone_list_encrypted"_s,
                 "encryption is told before the old system");
        QCOMPARE(page.row(1).imageText, u"wizard_backup_encrypted"_s);
    }

    void connectPhone()
    {
        WizardFixture f(DRTextTables::echoing());
        f.sequence->gotoStepForKey(DRMGStepKeys::kConnectPhone);
        const auto& page = step<DRMGSequenceStepConnectPhone>(f, DRMGStepKeys::kConnectPhone);
        QVERIFY(!page.showsSpinner());
        QCOMPARE(page.bodyText(), u"IDD_STEPWIZ_CONNECT_PHONE_IDC_STATIC"_s);
        QCOMPARE(page.noteText(), u"IDD_STEPWIZ_CONNECT_PHONE_IDC_STATIC_2\nIDD_STEPWIZ_CONNECT_PHONE_IDC_STATIC_3"_s);
        f.device->stateFlags = 0;
        f.connectPhone();
        QVERIFY(page.showsSpinner());
        QCOMPARE(page.bodyText(), u"IDD_STEPWIZ_DETECT_PHONE_IDC_STATIC"_s);
        QCOMPARE(page.noteText(), u"IDD_STEPWIZ_DETECT_PHONE_IDC_STATIC_2"_s);
    }

    void incompatiblePhoneIsNamed()
    {
        WizardFixture f(DRTextTables::echoing());
        f.device->name = u"<i>A&B</i>%ws"_s;
        f.connectPhone();
        QStringList order;
        QObject::connect(f.sequence.get(), &DRSequence::ended, f.sequence.get(), [&] { order << u"ended"_s; });
        QObject::connect(f.sequence.get(), &DRMGSequence::contactsSetupSelected, f.sequence.get(),
                         [&] { order << u"contacts"_s; });
        f.sequence->gotoStepForKey(DRMGStepKeys::kPhoneIncompatible);
        auto& page = step<DRMGSequenceStepPhoneIncompatible>(f, DRMGStepKeys::kPhoneIncompatible);
        QCOMPARE(page.bodyHtml(), u"@TXT1 &lt;i&gt;A&amp;B&lt;/i&gt;%ws<br />@TXT4<br /><br />@TXT2 "
                                  "<a href = 'contactssetup'><link> </link></a>"_s.replace(
                                      u'@', u"IDD_STEPWIZ_INCOMPATIBLE_PHONE_IDC_"_s));
        QVERIFY(page.linkClicked(u"other"_s));
        QVERIFY(order.isEmpty());
        QVERIFY(page.linkClicked(u"ContactsSetup"_s));
        QCOMPARE(order, (QStringList{u"ended"_s, u"contacts"_s}));
        QVERIFY(f.analytics.takeEvents().contains(u"Migrate|Sequence cancelled|"_s));
    }

    void linksOfTheClosingPage_data()
    {
        const DRTestTable<QString, QStringList, QString> row("link", "events", "asked");
        row("help", u"Vorn"_s, {}, u"https://help.example/"_s);
        row("backup", u"BACKUP"_s, {u"Migrate|Backup and restore clicked|"_s, u"Migrate|Sequence completed|"_s},
            u"restore"_s);
        row("other", u"x"_s, {}, {});
    }

    void linksOfTheClosingPage()
    {
        QFETCH(const QString, link);
        WizardFixture f;
        f.context.supportAddress = u"https://help.example/"_s;
        f.sequence = DRMGSequence::sequence(f.context);
        QString asked;
        QObject::connect(f.sequence.get(), &DRMGSequence::openUrlRequested, f.sequence.get(),
                         [&](const QUrl& address) { asked = address.toString(); });
        QObject::connect(f.sequence.get(), &DRMGSequence::restoreSelected, f.sequence.get(),
                         [&] { asked = f.sequence->currentStep() == nullptr ? u"restore"_s : u"too early"_s; });
        f.sequence->gotoStepForKey(DRMGStepKeys::kComplete);
        static_cast<void>(f.analytics.takeEvents()); // those of the page itself
        QVERIFY(step<DRMGSequenceStepComplete>(f, DRMGStepKeys::kComplete).linkClicked(link));
        QTEST(f.analytics.takeEvents(), "events");
        QTEST(asked, "asked");
    }

    void shortDates_data()
    {
        const DRTestTable<QLocale, QString> row("locale", "date");
        row("British", QLocale(QLocale::English, QLocale::UnitedKingdom), u"06/05/2014, "_s);
        row("German", QLocale(QLocale::German, QLocale::Germany), u"06.05.14, "_s);
    }

    void shortDates()
    {
        QFETCH(const QLocale, locale);
        QFETCH(const QString, date);
        const QLocale before;
        QLocale::setDefault(locale);
        const QString text = shortDateText(DRTestClock().now());
        QLocale::setDefault(before);
        QCOMPARE(text, date + DRTestClock().now().toLocalTime().toString(u"HH:mm"_s));
    }

    void partsAreNoFormats() { QCOMPARE(DRMGHtml::joined(u"%@-%@-%@"_s, {u"%@"_s, u"%1"_s}), u"%@-%1-"_s); }
};

QTEST_GUILESS_MAIN(TestPageTexts)
#include "TestPageTexts.moc"
