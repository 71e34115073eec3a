#include "platform/core/DRPrivateFolder.h"
#include "tests/app/cli/DRProgramSandbox.h"
#include "tests/support/DRTestTable.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The window's program as a process.
class TestWizardProgram : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void privateFilesAreGoneWhenItIsTerminated_data()
    {
        const DRTestTable<QStringList, QByteArray> row("arguments", "page"); // page: as in the usage log
        row("assistant", {}, "welcome");
        row("undo", {u"--restore"_s}, "restore/choose");
    }

    void privateFilesAreGoneWhenItIsTerminated()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const QByteArray, page);
        constexpr int kPatience = 60000;
        constexpr int kInterrupted = 130;
        const DRProgramSandbox sandbox(QStringLiteral(PHONE_MIGRATE_WIZARD));
        const QString left = u"cache/phone-migrate/TarvexTransfer/packet/db"_s;
        QVERIFY(DRPrivateFolder::make(QFileInfo(sandbox.path(left)).path()));
        sandbox.write(left, "of a run that was killed");
        QProcess window;
        sandbox.prepare(window, arguments);
        window.start();
        const auto isShown = [&sandbox, &page] {
            QFile usage(sandbox.path(u"state/phone-migrate/usage.log"_s));
            return usage.open(QIODevice::ReadOnly) && usage.readAll().contains(page);
        };
        QTRY_VERIFY_WITH_TIMEOUT(isShown(), kPatience);
        QVERIFY(!QFile::exists(sandbox.path(left)));

        sandbox.write(left, "of this run");
        window.terminate();
        QCOMPARE(DRProgramSandbox::wait(window).code, kInterrupted);
        QVERIFY(!QFile::exists(sandbox.path(left)));
    }
};

QTEST_GUILESS_MAIN(TestWizardProgram)
#include "TestWizardProgram.moc"
