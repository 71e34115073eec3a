#pragma once

#include <any>
#include <map>

#include <QString>

/// The dictionary through which the steps of a sequence hand values on. Values keep their type: reading one as another
/// type answers the default.
class DRSequenceParameters {
public:
    template <typename T> void setValue(const QString& key, T value) { m_values[key] = std::any(std::move(value)); }

    /// The value under the key; a default-made one when there is none of this type.
    template <typename T> [[nodiscard]] T value(const QString& key) const
    {
        const auto found = m_values.find(key);
        if (found == m_values.end()) {
            return T();
        }
        const T* value = std::any_cast<T>(&found->second);
        return value == nullptr ? T() : *value;
    }

    [[nodiscard]] bool contains(const QString& key) const { return m_values.contains(key); }
    void remove(const QString& key) { m_values.erase(key); }

private:
    std::map<QString, std::any> m_values;
};
