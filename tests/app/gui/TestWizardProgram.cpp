#include "platform/core/DRPrivateFolder.h"
#include "tests/app/cli/DRProgramSandbox.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The window's program as a process.
class TestWizardProgram : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void privateFilesAreGoneWhenItIsTerminated()
    {
        constexpr int kPatience = 60000;
        constexpr int kInterrupted = 130;
        const DRProgramSandbox sandbox(QStringLiteral(PHONE_MIGRATE_WIZARD));
        const QString left = u"cache/phone-migrate/TarvexTransfer/packet/db"_s;
        QVERIFY(DRPrivateFolder::make(QFileInfo(sandbox.path(left)).path()));
        sandbox.write(left, "of a run that was killed");
        QProcess window;
        sandbox.prepare(window, {});
        window.start();
        const auto isShown = [&sandbox] {
            QFile usage(sandbox.path(u"state/phone-migrate/usage.log"_s));
            return usage.open(QIODevice::ReadOnly) && usage.readAll().contains("welcome");
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
