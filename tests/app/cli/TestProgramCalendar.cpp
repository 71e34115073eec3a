#include "model/backup_entry/DRMigrateDataTypeKeys.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/app/cli/DRPacketCheck.h"
#include "tests/app/cli/DRProgramTest.h"
#include "tests/support/DRTestTable.h"

using namespace DRMigrateKeys;
using namespace Qt::StringLiterals;

namespace {

const QString kStore = u"HomeDomain-Library/Calendar/Calendar.sqlitedb"_s;

} // namespace

/// Events through the program, from the sample's backup to the packet on its phone.
class TestProgramCalendar : public DRProgramTest {
    Q_OBJECT

private:
    [[nodiscard]] DRPacketCheck check() const { return {*m_sandbox, QStringLiteral(CHECK_CALENDAR)}; }

    [[nodiscard]] bool changePhone(const QString& script) const
    {
        return check().change(kCalendarPacket, [this, &script](const QString& folder) {
            auto database =
                DRDatabase::open(m_sandbox->path(folder + u"/db/calendar.db"_s), DRDatabase::Profile::Create);
            return database && database->executeScript(script);
        });
    }

private Q_SLOTS:
    void everyEventArrives_data()
    {
        const DRTestTable<QByteArray, QString> row("zone", "script"); // script: changes the phone's calendars
        row("without summer time, a quarter past", "Asia/Kathmandu", {});
        row("with summer time", "Europe/Berlin", {});
        row("west of Greenwich", "America/St_Johns", {});
        row("a phone without calendars", "UTC", u"DELETE FROM Calendars"_s);
        row("the first of two calendars", "UTC",
            u"UPDATE Calendars SET _id = 7; INSERT INTO Calendars (_id, name) VALUES (3, 'a')"_s);
    }

    void everyEventArrives()
    {
        QFETCH(const QByteArray, zone);
        QFETCH(const QString, script);
        const QByteArray usualZone = qgetenv("TZ");
        qputenv("TZ", zone); // for the program and for the check
        const auto restored = qScopeGuard([&usualZone] { qputenv("TZ", usualZone); });

        const QJsonValue inspected = run({u"inspect"_s, u"--json"_s}).document()[u"kinds"][u"calendar"];
        QCOMPARE(inspected[u"count"].toInt(), 150);
        QCOMPARE(inspected[u"calendars"].toInt(), 5);

        QVERIFY(script.isEmpty() || changePhone(script));
        const QString before = check().kept(kCalendarPacket);
        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--only"_s, u"calendar"_s, u"--json"_s});
        QVERIFY2(ended.code == 0, ended.out.constData());
        QCOMPARE(ended.lines().last()[u"kinds"][kCalendarPacket][u"written"].toInt(), 150);
        const QString after = check().packet(kCalendarPacket);
        const QByteArray found = check().complaints({check().backup(), after, before});
        QVERIFY2(found.isEmpty(), found.constData());
        QVERIFY(!check().complaints({check().backup(), before, before}).isEmpty());
    }

    void damagedStoreIsNamed_data()
    {
        const DRTestTable<QString, int> row("kinds", "code");
        row("alone", u"calendar"_s, 16);
        row("among others", u"calendar,notes"_s, 20);
    }

    void damagedStoreIsNamed()
    {
        QFETCH(const QString, kinds);
        QFETCH(const int, code);
        QFile store(check().stored(kStore));
        QVERIFY(store.resize(1500)); // the middle of its first page
        m_source = m_sandbox->snapshot(u"backups"_s);
        const QString before = check().kept(kCalendarPacket);

        const auto ended = run({u"transfer"_s, u"--yes"_s, u"--only"_s, kinds, u"--json"_s});
        QVERIFY2(ended.code == code, ended.out.constData());
        QVERIFY2(ended.out.contains("cannot be read"), ended.out.constData());
        QVERIFY(readFile(before) == readFile(check().packet(kCalendarPacket)));
    }
};

QTEST_GUILESS_MAIN(TestProgramCalendar)
#include "TestProgramCalendar.moc"
