#pragma once

#include "tests/app/cli/DRProgramSandbox.h"

#include <functional>

/// The data of a sandbox's backup and phone, and independent programs that look at them.
class DRPacketCheck {
public:
    /// The sandbox must outlive this object.
    DRPacketCheck(const DRProgramSandbox& sandbox, QString script) : m_sandbox(sandbox), m_script(std::move(script)) {}

    [[nodiscard]] QString backup() const
    {
        const QDir backups(m_sandbox.path(QStringLiteral("backups")));
        return backups.filePath(backups.entryList(QDir::Dirs | QDir::NoDotAndDotDot).front());
    }

    /// A file of the backup, by its domain and path.
    [[nodiscard]] QString stored(const QString& name) const { return backup() + u'/' + sha1HexString(name); }

    [[nodiscard]] QString packet(const QString& id) const
    {
        return m_sandbox.path(QStringLiteral("phone/packets/%1/fullbackupdata").arg(id));
    }

    /// A copy of the packet as it is now.
    [[nodiscard]] QString kept(const QString& id) const
    {
        QString copy = m_sandbox.path(QStringLiteral("kept-") + id);
        QFile::remove(copy);
        return QFile::copy(packet(id), copy) ? copy : QString();
    }

    /// Lets `edit` change the packet's files, which are in the folder that it gets, relative to the sandbox's. It answers
    /// whether it could.
    [[nodiscard]] bool change(const QString& id, const std::function<bool(const QString& folder)>& edit) const
    {
        const QString folder = QStringLiteral("changed-") + id;
        return m_sandbox.run({QStringLiteral("packet"), QStringLiteral("expand"), packet(id), folder}).code == 0 &&
               edit(folder + QStringLiteral("/apps/") + id) && QFile::remove(packet(id)) &&
               m_sandbox.run({QStringLiteral("packet"), QStringLiteral("pack"), folder, packet(id)}).code == 0;
    }

    /// What the script complains about; empty when it finds everything as it must be.
    [[nodiscard]] QByteArray complaints(const QStringList& arguments) const
    {
        QProcess check;
        check.start(QStringLiteral(PYTHON), QStringList{QStringLiteral("-B"), m_script} + arguments);
        const auto ended = DRProgramSandbox::wait(check);
        return ended.code == 0 ? QByteArray() : "check: " + ended.out + ended.err;
    }

private:
    const DRProgramSandbox& m_sandbox;
    QString m_script;
};
