#include "tests/wizard/WizardFixture.h"
#include "wizard/DRTransferLedger.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString kPhone = u"phone"_s;

struct LedgerFixture : WizardFixture {
    [[nodiscard]] QString path() const { return folder.filePath(u"transfers.json"_s); }
    [[nodiscard]] bool record(const QDateTime& time) const
    {
        return DRTransferLedger::ofFile(path()).record({u"notes"_s}, *makeEntry(), kPhone, time);
    }
    [[nodiscard]] bool notePutBack(DRTransferLedger::PutBack what) const
    {
        const QDateTime backedUp(QDate(2014, 5, 4), QTime(0, 0), Qt::UTC);
        return DRTransferLedger::ofFile(path()).notePutBack(what, {u"notes"_s}, kPhone, backedUp, backedUp.addDays(1));
    }
};

} // namespace

/// The ledger of transfers on a disk that fails.
class TestTransferLedger : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fileThatCannotBeReachedIsNotTakenForNone();
    void putBackThatADamagedFileHidesIsNotNoted();
    void leftoversOfInterruptedWritesGo();
};

void TestTransferLedger::fileThatCannotBeReachedIsNotTakenForNone()
{
    const LedgerFixture test;
    QVERIFY(!DRTransferLedger::ofFile(test.path()).isDamaged());
    QVERIFY(QFile::link(test.path(), test.path())); // a link to itself: nobody can tell what it would lead to
    QVERIFY(DRTransferLedger::ofFile(test.path()).isDamaged());
}

void TestTransferLedger::putBackThatADamagedFileHidesIsNotNoted()
{
    using PutBack = DRTransferLedger::PutBack;
    const LedgerFixture test;
    QVERIFY(test.record(QDateTime(QDate(2014, 5, 3), QTime(0, 0), Qt::UTC)));
    QVERIFY(test.notePutBack(PutBack::Begins));
    QFile file(test.path());
    QVERIFY(file.resize(file.size() / 2));
    QVERIFY(!test.notePutBack(PutBack::Begins));
    QVERIFY(!test.notePutBack(PutBack::IsDone));
}

void TestTransferLedger::leftoversOfInterruptedWritesGo()
{
    const LedgerFixture test;
    for (const QString& name : {u".phone-migrate-Ab12Cd"_s, u".mine"_s}) {
        QFile file(test.folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QVERIFY(test.record(QDateTime(QDate(2014, 5, 3), QTime(0, 0), Qt::UTC)));
    QCOMPARE(QDir(test.folder.path()).entryList({u".*"_s}, QDir::Files | QDir::Hidden), QStringList({u".mine"_s}));
}

QTEST_GUILESS_MAIN(TestTransferLedger)
#include "TestTransferLedger.moc"
