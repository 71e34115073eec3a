#include "convert/media/DRMigrateAndroidMediaDataType.h"

bool DRMigrateAndroidMediaDataType::load()
{
    return true;
}

bool DRMigrateAndroidMediaDataType::mergeDataFrom(const DRMigrateDataType& source)
{
    setEntries(source.entries());
    return true;
}

bool DRMigrateAndroidMediaDataType::save()
{
    return true;
}
