#pragma once

#include <any>
#include <memory>
#include <vector>

/// The records of a data type; their type depends on the data type.
using DREntryList = std::vector<std::any>;

/// An immutable, shared list of records; never null. Replaced as a whole, so that a reader on another thread keeps what
/// it has.
using DREntries = std::shared_ptr<const DREntryList>;

/// The records of type T in the list, in order, without copying them; entries of other types are left out. The pointers
/// live as long as the list.
template <typename T> [[nodiscard]] std::vector<const T*> recordsOf(const DREntryList& entries)
{
    std::vector<const T*> records;
    records.reserve(entries.size());
    for (const std::any& entry : entries) {
        if (const T* record = std::any_cast<T>(&entry)) {
            records.push_back(record);
        }
    }
    return records;
}
