#pragma once

class DRMigrateDataTypeRegistry;

/// Enters every converter of this program in the registry. This is the one place to add a kind of data.
void registerMigrateConverters(DRMigrateDataTypeRegistry& registry);
