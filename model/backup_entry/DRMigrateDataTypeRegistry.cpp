#include "model/backup_entry/DRMigrateDataTypeRegistry.h"

#include "model/backup_entry/DRMigrateDataType.h"

#include <utility>

namespace {

std::shared_ptr<DRMigrateDataType> make(const std::map<QString, DRMigrateDataTypeRegistry::Factory>& factories,
                                        const QString& key,
                                        const DRMigrateServices& services)
{
    const auto found = factories.find(key);
    return found == factories.end() ? nullptr : found->second(services);
}

} // namespace

void DRMigrateDataTypeRegistry::registerIPhoneType(const QString& key, Factory factory)
{
    m_iPhoneTypes[key] = std::move(factory);
}

void DRMigrateDataTypeRegistry::registerPacketType(const QString& packetID, Factory factory)
{
    m_packetTypes[packetID] = std::move(factory);
}

void DRMigrateDataTypeRegistry::registerMediaType(const QString& key, Factory factory)
{
    m_mediaTypes[key] = std::move(factory);
}

std::shared_ptr<DRMigrateDataType> DRMigrateDataTypeRegistry::iPhoneType(const QString& key,
                                                                         const DRMigrateServices& services) const
{
    return make(m_iPhoneTypes, key, services);
}

std::shared_ptr<DRMigrateDataType> DRMigrateDataTypeRegistry::packetType(const QString& packetID,
                                                                         const DRMigrateServices& services) const
{
    return make(m_packetTypes, packetID, services);
}

std::shared_ptr<DRMigrateDataType> DRMigrateDataTypeRegistry::mediaType(const QString& key,
                                                                        const DRMigrateServices& services) const
{
    return make(m_mediaTypes, key, services);
}
