#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <vector>

/// Finds paths by their last component, the text after the last "/", at a cost that does not depend on their number. Only paths
/// of the same name cost one comparison each. A value; the paths are shared, not copied.
///
/// Letter case is ignored everywhere here as Qt::CaseInsensitive does it: character by character (Unicode's simple folding), so
/// that no comparison changes a length and a text has as many characters folded as before.
class DRFileNameIndex {
public:
    enum class Extension {
        Kept,
        Removed, ///< the name ends before its last "."
    };

    DRFileNameIndex(QStringList paths, Extension extension);

    /// The first of the paths, in their order, that starts with `prefix` and has that name. Null when there is none.
    [[nodiscard]] QString firstPath(const QString& prefix, const QString& name) const;

    /// The path's last component as this index compares it.
    [[nodiscard]] static QStringView nameOf(QStringView path, Extension extension);

private:
    [[nodiscard]] size_t bucketOf(QStringView name) const;

    QStringList m_paths;
    Extension m_extension;
    /// Names are told apart by buckets; the paths of one bucket form a chain in the order of the list. Both hold positions in
    /// the list, or its size at the end of a chain.
    std::vector<qsizetype> m_firstOfBucket;
    std::vector<qsizetype> m_nextInBucket;
};
