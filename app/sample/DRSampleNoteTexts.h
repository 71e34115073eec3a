#pragma once

#include "app/sample/DRSampleRandom.h"

#include <QJsonObject>
#include <QString>

#include <vector>

/// A made-up note as an iPhone's notes app keeps it.
struct DRSampleNote {
    QString title;   ///< the first line, as plain text
    QString summary; ///< the second line, as plain text
    QString content; ///< HTML
    bool hasDates = true;
};

/// Composes notes from the word lists in texts/notes.json: shopping lists, recipes, journeys and meetings in several
/// languages.
class DRSampleNoteTexts {
public:
    DRSampleNoteTexts();

    /// A note of a few lines.
    [[nodiscard]] DRSampleNote compose(DRSampleRandom& random) const;

    /// A note whose content is at least `length` UTF-16 units long.
    [[nodiscard]] DRSampleNote composeLong(DRSampleRandom& random, qsizetype length) const;

    /// Notes that are hard to convert, each for a reason of its own; the same in every sample.
    [[nodiscard]] static std::vector<DRSampleNote> hardNotes();

private:
    [[nodiscard]] QString line(const QString& pattern, DRSampleRandom& random) const;
    [[nodiscard]] DRSampleNote composeLines(DRSampleRandom& random, int lines, qsizetype length) const;

    QStringList m_people;
    std::vector<QJsonObject> m_kinds; ///< of all languages: "titles" and "lines"
};
