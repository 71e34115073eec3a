#pragma once

#include "platform/core/DRDigest.h"
#include "platform/sqlite/DRDatabase.h"
#include "tests/support/DRTestFiles.h"
#include "tests/support/DRTestServices.h"

#include <memory>
#include <utility>

/// An iPhone's backup and the working folder of an app's packet, as converters find them.
struct DRConverterFixture {
    explicit DRConverterFixture(QString id = {}) : packetID(std::move(id))
    {
        QDir().mkpath(backup());
        QDir().mkpath(path(QStringLiteral("phone/")) + packetID);
    }

    DRTestServices test;
    QString packetID;

    [[nodiscard]] QString path(const QString& relative) const
    {
        return QDir(test.root.path()).canonicalPath() + u'/' + relative;
    }
    [[nodiscard]] QString backup() const { return path(QStringLiteral("backup")); }

    /// Where the backup keeps a file.
    [[nodiscard]] QString backedUp(const QString& domainPath) const
    {
        return backup() + u'/' + sha1HexString(domainPath);
    }

    /// Where a file of the app lies once its packet is expanded.
    [[nodiscard]] QString inApp(const QString& file) const
    {
        return path(QStringLiteral("work/%1/apps/%1/%2").arg(packetID, file));
    }

    /// Runs the script on the database; makes one that is missing.
    [[nodiscard]] static bool run(const QString& database, const QString& script)
    {
        QDir().mkpath(QFileInfo(database).path());
        auto opened = DRDatabase::open(database, DRDatabase::Profile::Create);
        return opened && opened->executeScript(script);
    }

    template <typename T> [[nodiscard]] std::shared_ptr<T> iPhoneSide() const
    {
        auto source = std::make_shared<T>(test.services);
        source->setSourcePath(backup());
        return source;
    }

    template <typename T> [[nodiscard]] std::shared_ptr<T> phoneSide() const
    {
        auto target = std::make_shared<T>(test.services);
        target->setSourcePath(path(QStringLiteral("phone")));
        target->setTargetPath(path(QStringLiteral("work")));
        target->setPacketID(packetID);
        return target;
    }
};
