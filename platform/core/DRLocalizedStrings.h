#pragma once

#include <optional>

#include <QHash>
#include <QString>

/// The texts behind resource identifiers such as "IDS_STEPWIZ_WELCOME".
class DRLocalizedStrings {
public:
    /// An empty table: every identifier has the empty text.
    DRLocalizedStrings() = default;

    /// Reads a table: one JSON object from identifier to text. None when the file is missing or is no such object.
    [[nodiscard]] static std::optional<DRLocalizedStrings> fromFile(const QString& path);

    /// The text under the identifier; the empty text when there is none.
    [[nodiscard]] QString text(const QString& identifier) const { return m_texts.value(identifier, QString()); }

private:
    QHash<QString, QString> m_texts;
};
