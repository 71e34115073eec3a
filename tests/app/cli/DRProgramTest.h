#pragma once

#include "tests/app/cli/DRProgramSandbox.h"

#include <QObject>
#include <QTest>

#include <map>
#include <memory>

/// Base of the tests that drive the real program: each gets a copy of a sample backup and phone in folders of its own, and afterwards
/// the backup must be what it was.
class DRProgramTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_sample = std::make_unique<DRProgramSandbox>(QStringLiteral(PHONE_MIGRATE_PROGRAM));
        QCOMPARE(m_sample->run({QStringLiteral("sample"), QStringLiteral("made")}).code, 0);
    }

    void init()
    {
        m_sandbox = std::make_unique<DRProgramSandbox>(QStringLiteral(PHONE_MIGRATE_PROGRAM));
        m_sandbox->copyTree(m_sample->path(QStringLiteral("made/backups")), QStringLiteral("backups"));
        m_sandbox->copyTree(m_sample->path(QStringLiteral("made/phone")), QStringLiteral("phone"));
        m_source = m_sandbox->snapshot(QStringLiteral("backups"));
    }

    void cleanup()
    {
        QVERIFY2(!m_sandbox || m_sandbox->snapshot(QStringLiteral("backups")) == m_source, "the source was changed");
    }

protected:
    /// A path in the sample that every test gets a copy of; not to be changed.
    [[nodiscard]] QString samplePath(const QString& relative) const
    {
        return m_sample->path(QStringLiteral("made/") + relative);
    }

    [[nodiscard]] DRProgramSandbox::Ended run(const QStringList& arguments) const
    {
        return m_sandbox->run(m_sandbox->withPlaces(arguments));
    }

    std::unique_ptr<DRProgramSandbox> m_sandbox;
    std::map<QString, QString> m_source; ///< what the backup must still be at the end of the test

private:
    std::unique_ptr<DRProgramSandbox> m_sample; ///< made once, copied for each test
};
