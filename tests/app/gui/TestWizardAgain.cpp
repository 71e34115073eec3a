#include "model/packet/DRMigratePacketCodec.h"
#include "platform/sqlite/DRDatabase.h"
#include "platform/ui/DRDarkStyle.h"
#include "tests/app/gui/DRWizardRun.h"

#include <QDirIterator>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

using ErrorState = DRMGSequenceStepComplete::ErrorState;
using Phase = DRMGSequenceStepTransfer::Phase;

constexpr int kLongest = 60'000; ///< milliseconds that a transfer of the sample may take on a busy machine

/// How many rows the tables of the phone's apps have, and how many files the folders of its storage.
using PhoneContent = QMap<QString, qint64>;

void countRows(PhoneContent& content, const QString& name, const QString& path)
{
    auto database = DRDatabase::open(path, DRDatabase::Profile::Phone);
    if (!database) {
        return; // not every file is a database
    }
    QStringList tables;
    for (auto rows = database->executeQuery(u"SELECT name FROM sqlite_master WHERE type = 'table'"_s); rows.next();) {
        tables.append(rows.stringAt(0));
    }
    for (const QString& table : std::as_const(tables)) {
        auto count = database->executeQuery(u"SELECT COUNT(*) FROM \"%1\""_s.arg(table));
        content[name + u' ' + table] = count.next() ? count.integerAt(0) : -1;
    }
}

PhoneContent contentOf(const QString& phoneFolder)
{
    PhoneContent content;
    const QTemporaryDir expanded;
    const QDir packets(phoneFolder + u"/packets"_s);
    for (const QString& packet : packets.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString folder = expanded.filePath(packet);
        content[packet] =
            DRMigrateUtils::expandAndroidBackupPacket(packets.filePath(packet + u"/fullbackupdata"_s), folder);
        for (const QString& file : DRMigrateUtils::filesBelowApps(folder)) {
            countRows(content, file, folder + u'/' + file);
        }
    }
    const QString storage = phoneFolder + u"/storage"_s;
    for (QDirIterator files(storage, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
        // Recordings are named after their time, so files are counted.
        ++content[QFileInfo(files.next()).path().mid(storage.size())];
    }
    return content;
}

/// What one phone has and the other has not; empty when they have the same.
QString difference(const PhoneContent& one, const PhoneContent& other)
{
    QStringList texts;
    PhoneContent both = one;
    both.insert(other);
    for (const QString& name : both.keys()) {
        if (one.value(name, -1) != other.value(name, -1)) {
            texts.append(u"%1: %2 and %3"_s.arg(name).arg(one.value(name, -1)).arg(other.value(name, -1)));
        }
    }
    return texts.join(u'\n');
}

void transferAgain(const DRWizardRun& run)
{
    run.migration->start();
    run.window->show();
    run.click(u"next"_s);
    QCOMPARE(run.pageKey(), DRMGStepKeys::kSelectData);
    run.click(u"next"_s);
    QTRY_COMPARE_WITH_TIMEOUT(run.pageKey(), DRMGStepKeys::kComplete, kLongest);
}

} // namespace

/// A run after one that was given up or failed, in the same process: what the first one still does in the background must
/// not get into its way.
class TestWizardAgain : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void afterACancelledRun_data();
    void afterACancelledRun();
    void afterAFailedRun();

private:
    PhoneContent m_expected; ///< after a run that nothing went before
};

void TestWizardAgain::initTestCase()
{
    DRDarkStyle::applyToApplication();
    const DRWizardPlaces places;
    const DRWizardRun run(places);
    transferAgain(run);
    QCOMPARE(run.errorState(), ErrorState::Success);
    m_expected = contentOf(places.options.phoneFolder);
    QVERIFY(m_expected.size() > 20);
}

void TestWizardAgain::afterACancelledRun_data()
{
    QTest::addColumn<Phase>("phase");
    QTest::newRow("back up") << Phase::BackUp;
    QTest::newRow("load") << Phase::Load;
    QTest::newRow("merge") << Phase::Merge;
    QTest::newRow("save") << Phase::Save;
}

void TestWizardAgain::afterACancelledRun()
{
    QFETCH(const Phase, phase);
    const DRWizardPlaces places;
    const DRWizardRun run(places);
    auto& transfer = run.step<DRMGSequenceStepTransfer>(DRMGStepKeys::kTransfer);
    bool isFirst = true;
    connect(&transfer, &DRMGSequenceStepTransfer::progressPhaseChanged, run.migration.get(), [&] {
        if (transfer.progressPhase() == phase && std::exchange(isFirst, false)) {
            QMetaObject::invokeMethod(run.migration.get(), &DRSequence::pressCancel, Qt::QueuedConnection);
        }
    });
    run.click(u"next"_s);
    run.click(u"next"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!run.window->isVisible(), kLongest);
    QVERIFY(run.migration->currentStep() == nullptr);

    transferAgain(run);
    QCOMPARE(run.errorState(), ErrorState::Success);
    QCOMPARE(difference(contentOf(places.options.phoneFolder), m_expected), QString());
}

void TestWizardAgain::afterAFailedRun()
{
    const DRWizardPlaces places;
    const QDir packets(places.options.phoneFolder + u"/packets"_s);
    const QString broken = packets.filePath(packets.entryList(QDir::Dirs | QDir::NoDotAndDotDot).front());
    QVERIFY(QDir().rename(broken, broken + u"-kept"_s));
    QVERIFY(QDir().mkpath(broken));
    places.write(broken + u"/fullbackupdata"_s, "not a packet");
    const DRWizardRun run(places);
    transferAgain(run);
    QCOMPARE(run.errorState(), ErrorState::BackupFailed);
    run.click(u"next"_s);
    QVERIFY(!run.window->isVisible());

    QVERIFY(QDir(broken).removeRecursively());
    QVERIFY(QDir().rename(broken + u"-kept"_s, broken));
    transferAgain(run);
    QCOMPARE(run.errorState(), ErrorState::Success);
    QCOMPARE(difference(contentOf(places.options.phoneFolder), m_expected), QString());
}

QTEST_MAIN(TestWizardAgain)

#include "TestWizardAgain.moc"
