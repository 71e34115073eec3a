#pragma once

#include "app/sample/DRSamplePerson.h"
#include "app/sample/DRSampleRandom.h"

#include <QJsonArray>
#include <QStringList>

#include <vector>

/// Composes people and companies from the word lists in texts/contacts.json, in many languages.
class DRSamplePersonTexts {
public:
    DRSamplePersonTexts();

    /// People who are hard to convert, each for a reason of its own; the same in every sample.
    [[nodiscard]] std::vector<DRSamplePerson> hardPeople() const;

    /// Somebody ordinary. One in nine is a company, one in five has a picture.
    [[nodiscard]] DRSamplePerson compose(DRSampleRandom& random) const;

    /// The labels and the keys of parts that every address book has, as the phone stores them and in its order.
    [[nodiscard]] const QStringList& labels() const { return m_labels; }
    [[nodiscard]] const QStringList& keys() const { return m_keys; }

private:
    /// The words of one language. "#" stands for any digit.
    struct Language {
        QStringList given;  ///< with the reading after "|" where there is one
        QStringList family; ///< the same
        QString mobile;
        QString landline;
        QStringList streets;
        QStringList cities;  ///< "city|state|post code"
        QStringList country; ///< name and code
        QStringList companies;
        QStringList jobs;
        QStringList departments;
        QStringList notes;
    };

    [[nodiscard]] static Language language(const QJsonObject& words);
    void name(DRSamplePerson& person, const Language& language, DRSampleRandom& random) const;
    void addReachability(DRSamplePerson& person, const Language& language, DRSampleRandom& random) const;
    void addAddress(DRSamplePerson& person, const Language& language, DRSampleRandom& random) const;
    void addRest(DRSamplePerson& person, const Language& language, DRSampleRandom& random) const;
    [[nodiscard]] QString label(DRSampleRandom& random, const QStringList& usual) const;
    [[nodiscard]] QString handle(DRSampleRandom& random) const;

    QJsonArray m_hardPeople;
    QStringList m_labels;
    QStringList m_keys;
    QStringList m_customLabels;
    QStringList m_services;
    QStringList m_handles;
    QStringList m_nicknames;
    std::vector<Language> m_languages;
};
