#pragma once

#include <optional>

#include <QHash>
#include <QString>
#include <QStringList>

/// The texts behind resource identifiers such as "IDS_STEPWIZ_WELCOME".
class DRLocalizedStrings {
public:
    /// An empty table: every identifier has the empty text.
    DRLocalizedStrings() = default;

    /// Reads a table: one JSON object from identifier to text. None when the file is missing or is no such object.
    [[nodiscard]] static std::optional<DRLocalizedStrings> fromFile(const QString& path);

    /// The tables of a folder, named by language ("de.json"): the first of the languages ("de-AT", "de") that has one,
    /// with the English texts where it lacks some. None when the English table, or the other, cannot be read.
    [[nodiscard]] static std::optional<DRLocalizedStrings> fromFolder(const QString& folder,
                                                                      const QStringList& languages);

    /// The identifiers of the table, in no order.
    [[nodiscard]] QStringList identifiers() const { return m_texts.keys(); }

    /// The text under the identifier; the empty text when there is none.
    [[nodiscard]] QString text(const QString& identifier) const { return m_texts.value(identifier, QString()); }

private:
    QHash<QString, QString> m_texts;
};
