#pragma once

#include "app/sample/DRSample.h"
#include "platform/core/DRDigest.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/support/DRTestClock.h"

#include <QTemporaryDir>

/// A sample of this scale, and what its databases answer.
struct DRSampleFixture {
    explicit DRSampleFixture(int scale) : made(writeSample(folder.filePath(QStringLiteral("sample")), scale, clock))
    {
        if (!made.isWritten) {
            qFatal("%s", qPrintable(made.message));
        }
    }

    /// Where the backup keeps a file.
    [[nodiscard]] QString stored(const QString& name) const { return made.backupFolder + u'/' + sha1HexString(name); }

    /// The first column of the query's rows, joined by "|".
    [[nodiscard]] static QString answer(const QString& path, const QString& sql)
    {
        auto database = DRDatabase::open(path, DRDatabase::Profile::Source);
        return database ? answer(*database, sql) : QStringLiteral("cannot be opened");
    }

    [[nodiscard]] static QString answer(DRDatabase& database, const QString& sql)
    {
        auto rows = database.executeQuery(sql);
        QStringList values;
        while (rows.next()) {
            values += rows.isNullAt(0) ? QStringLiteral("NULL") : rows.stringAt(0);
        }
        return rows.hasFailed() ? QStringLiteral("failed: ") + database.lastErrorMessage() : values.join(u'|');
    }

    QTemporaryDir folder;
    DRTestClock clock;
    DRSampleResult made;
};
