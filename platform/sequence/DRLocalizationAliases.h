#pragma once

#include <QHash>
#include <QString>

/// Points the identifiers of shared texts, such as those of the frame's buttons, at others.
class DRLocalizationAliases {
public:
    void setAliasString(const QString& identifier, const QString& forLocalizationKey)
    {
        m_aliases.insert(forLocalizationKey, identifier);
    }

    [[nodiscard]] bool contains(const QString& localizationKey) const { return m_aliases.contains(localizationKey); }

    /// The identifier that the key stands for: its alias, or itself when it has none.
    [[nodiscard]] QString resolved(const QString& localizationKey) const
    {
        return m_aliases.value(localizationKey, localizationKey);
    }

private:
    QHash<QString, QString> m_aliases;
};
