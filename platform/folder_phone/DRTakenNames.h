#pragma once

#include "platform/core/DRFileDescriptor.h"

#include <cstddef>
#include <map>

#include <QString>

/// The numbered names "name", "name (2)", ... of one folder that are known to be taken, and what their files look like,
/// so that the next file of that name need not be compared with all of them. Names only get more: one that is freed
/// while this object lives stays taken for it.
class DRTakenNames {
public:
    static constexpr int kMaximumNumber = 100000;

    /// Where a file goes: a name that is free, or the name of a file that already has its content.
    struct Place {
        int number = 0; ///< of the name; 0 when no name is left
        bool isFilled = false;
    };

    /// Finds the place of an open file in the open folder, always the same for one object, as always is the name.
    [[nodiscard]] Place placeFor(const DRFileDescriptor& source, const DRFileDescriptor& folder, const QString& name);

private:
    void lookAtNewNames(const DRFileDescriptor& folder, const QString& name);

    std::multimap<std::size_t, int> m_numbers; ///< by what the regular files of these numbers look like
    int m_known = 0;                           ///< the numbers up to here are taken
};
