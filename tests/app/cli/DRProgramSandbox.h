#pragma once

#include <map>

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include "platform/core/DRDigest.h"
#include "platform/core/DRPropertyList.h"
#include "tests/support/DRTestFiles.h"

/// A folder with a backup, a phone and user folders of its own, in which the real program is run.
class DRProgramSandbox {
public:
    struct Ended {
        int code = -1;
        QByteArray out;
        QByteArray err;

        [[nodiscard]] QJsonObject document() const { return QJsonDocument::fromJson(out).object(); }

        /// The JSON lines; an empty object for a line that is none.
        [[nodiscard]] QList<QJsonObject> lines() const
        {
            QList<QJsonObject> objects;
            for (const QByteArray& line : out.split('\n')) {
                if (!line.isEmpty()) {
                    objects << QJsonDocument::fromJson(line).object();
                }
            }
            return objects;
        }
    };

    explicit DRProgramSandbox(QString program) : m_program(std::move(program)) {}

    [[nodiscard]] QString path(const QString& relative) const { return m_folder.filePath(relative); }

    /// The program's environment: nothing of the real user's, no terminal settings.
    [[nodiscard]] QProcessEnvironment environment() const
    {
        QProcessEnvironment values = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"PHONE_MIGRATE_BACKUPS", "PHONE_MIGRATE_PHONE", "PHONE_MIGRATE_MUSIC", "NO_COLOR"}) {
            values.remove(QString::fromLatin1(name));
        }
        values.insert(QStringLiteral("HOME"), path(QStringLiteral("home")));
        values.insert(QStringLiteral("XDG_DATA_HOME"), path(QStringLiteral("data")));
        values.insert(QStringLiteral("XDG_CACHE_HOME"), path(QStringLiteral("cache")));
        values.insert(QStringLiteral("XDG_STATE_HOME"), path(QStringLiteral("state")));
        return values;
    }

    /// The arguments with the sandbox's backups and phone appended.
    [[nodiscard]] QStringList withPlaces(QStringList arguments) const
    {
        return arguments << QStringLiteral("--backups") << path(QStringLiteral("backups")) << QStringLiteral("--phone")
                         << path(QStringLiteral("phone"));
    }

    [[nodiscard]] Ended run(const QStringList& arguments) const
    {
        QProcess process;
        prepare(process, arguments);
        process.start();
        return wait(process);
    }

    void prepare(QProcess& process, const QStringList& arguments) const
    {
        process.setProcessEnvironment(environment());
        process.setWorkingDirectory(m_folder.path());
        process.setProgram(m_program);
        process.setArguments(arguments);
    }

    [[nodiscard]] static Ended wait(QProcess& process)
    {
        static constexpr int kPatience = 60000;
        const bool hasEnded = process.waitForFinished(kPatience) && process.exitStatus() == QProcess::NormalExit;
        return {hasEnded ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
    }

    /// Copies the tree `from` to a new folder below the sandbox.
    void copyTree(const QString& from, const QString& relative) const
    {
        QDirIterator entries(from, QDir::Files, QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            const QString source = entries.next();
            const QString target = path(relative + u'/' + QDir(from).relativeFilePath(source));
            QDir().mkpath(QFileInfo(target).path());
            QFile::copy(source, target);
        }
    }

    void write(const QString& relative, const QByteArray& bytes) const
    {
        if (!writeFile(path(relative), bytes)) {
            qFatal("a file of the test cannot be written");
        }
    }

    /// A backup of which only the description exists.
    void makeBackup(const QString& relative,
                    const QString& device,
                    const QString& version,
                    const QDateTime& date,
                    bool isEncrypted = false) const
    {
        QVariantMap info{{QStringLiteral("Product Version"), version}, {QStringLiteral("Last Backup Date"), date}};
        if (!device.isEmpty()) {
            info.insert(QStringLiteral("Device Name"), device);
        }
        write(relative + QStringLiteral("/Info.plist"), DRPropertyList::xmlFromDictionary(info));
        write(relative + QStringLiteral("/Manifest.plist"),
              DRPropertyList::xmlFromDictionary({{QStringLiteral("IsEncrypted"), isEncrypted}}));
    }

    /// Every path below the folder with type, bytes and time of change.
    [[nodiscard]] std::map<QString, QString> snapshot(const QString& relative) const
    {
        std::map<QString, QString> entries;
        QDirIterator iterator(path(relative), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                              QDirIterator::Subdirectories);
        while (iterator.hasNext()) {
            const QFileInfo info(iterator.next());
            QFile file(info.filePath());
            QCryptographicHash hash(QCryptographicHash::Sha1);
            if (info.isFile() && file.open(QIODevice::ReadOnly)) {
                hash.addData(&file);
            }
            entries[info.filePath()] =
                QString::fromLatin1(hash.result().toHex()) + QString::number(info.lastModified().toMSecsSinceEpoch());
        }
        return entries;
    }

private:
    QTemporaryDir m_folder;
    QString m_program;
};
