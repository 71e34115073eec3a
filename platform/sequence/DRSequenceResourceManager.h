#pragma once

#include <QString>
#include <QStringList>

/// Finds images and other resources by name in the bundles that were registered, the last one first.
class DRSequenceResourceManager {
public:
    /// Registers a folder of resources, such as ":/wizard/images". Registering it again changes nothing.
    void registerBundle(const QString& folder);

    /// The registered folders, the last one first.
    [[nodiscard]] const QStringList& bundles() const { return m_bundles; }

    /// The path of the file with this name, with or without its extension; empty when no bundle holds one.
    [[nodiscard]] QString pathForResource(const QString& name) const;

private:
    QStringList m_bundles;
};
