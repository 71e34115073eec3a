#pragma once

#include <functional>
#include <map>
#include <memory>

#include <QString>

class DRMigrateDataType;
struct DRMigrateServices;

/// Knows how to make the data type of each key or packet ID. The backup entries ask it and so know no converter; the
/// program's list of converters fills it, tests fill small ones of their own.
class DRMigrateDataTypeRegistry {
public:
    using Factory = std::function<std::shared_ptr<DRMigrateDataType>(const DRMigrateServices&)>;

    /// Enter the maker of the iPhone side of a data-type key, of the phone side of a packet ID, of the phone side of a
    /// media key. A later one replaces an earlier one.
    void registerIPhoneType(const QString& key, Factory factory);
    void registerPacketType(const QString& packetID, Factory factory);
    void registerMediaType(const QString& key, Factory factory);

    /// Make a data type; null for an unknown key or packet ID.
    [[nodiscard]] std::shared_ptr<DRMigrateDataType> iPhoneType(const QString& key,
                                                                const DRMigrateServices& services) const;
    [[nodiscard]] std::shared_ptr<DRMigrateDataType> packetType(const QString& packetID,
                                                                const DRMigrateServices& services) const;
    [[nodiscard]] std::shared_ptr<DRMigrateDataType> mediaType(const QString& key,
                                                               const DRMigrateServices& services) const;

private:
    std::map<QString, Factory> m_iPhoneTypes;
    std::map<QString, Factory> m_packetTypes;
    std::map<QString, Factory> m_mediaTypes;
};
