#pragma once

#include "app/sample/DRSampleSettings.h"
#include "fuzz/DRFuzzDatabase.h"
#include "fuzz/DRFuzzFolder.h"

#include <QString>

#include <optional>

class DRFuzzInput;
class DRSamplePhone;

/// An expanded packet of the sample's phone, whose database inputs change. Made once.
class DRFuzzPhone {
public:
    /// Adds the packet to a phone. See "app/sample".
    using Part = bool (*)(DRSamplePhone& phone, const DRSampleSettings& settings);

    /// `database`: relative to the app's folder, such as "db/mmssms.db".
    DRFuzzPhone(Part part, QString packetID, const QString& database);

    /// Makes the packet anew, its database changed as the rest of the input says.
    void edit(DRFuzzInput& input);

    /// Makes the packet anew.
    void reset();

    /// The folder with the packet in it, as converters expect it.
    [[nodiscard]] QString path() const { return m_folder.path(QStringLiteral("work")); }
    [[nodiscard]] const QString& packetID() const { return m_packetID; }

    /// The path of the database.
    [[nodiscard]] const QString& database() const { return m_database; }

    /// The rows of all these tables; none when they cannot be counted.
    [[nodiscard]] std::optional<qint64> rowCount(const QStringList& tables) const;

private:
    [[nodiscard]] QString pathInApp(const QString& name) const;

    DRFuzzFolder m_folder;
    QString m_packetID;
    QString m_database;
    std::optional<DRFuzzDatabase> m_seed;
};
