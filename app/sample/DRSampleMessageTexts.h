#pragma once

#include "app/sample/DRSampleMessage.h"
#include "app/sample/DRSampleRandom.h"

#include <QJsonArray>
#include <QStringList>

#include <vector>

/// Composes messages from the lists in texts/messages.json, in many languages.
class DRSampleMessageTexts {
public:
    DRSampleMessageTexts();

    /// Chats and groups that are hard to convert, each for a reason of its own; the same in every sample.
    [[nodiscard]] std::vector<DRSampleChat> hardChats() const;
    [[nodiscard]] std::vector<DRSampleGroup> hardGroups() const;

    /// A line or two in one of the languages, which `language` numbers from 0 on and then over again.
    [[nodiscard]] QString compose(std::size_t language, DRSampleRandom& random) const;

private:
    QJsonArray m_hardChats;
    QJsonArray m_hardGroups;
    QStringList m_people;
    QStringList m_endings;
    std::vector<QStringList> m_languages;
};
