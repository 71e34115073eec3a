#pragma once

#include "app/sample/DRSampleEvent.h"
#include "app/sample/DRSampleRandom.h"
#include "app/sample/DRSampleSettings.h"

#include <QJsonObject>

/// Composes events from texts/calendar.json: appointments, holidays and birthdays around the backup's moment.
class DRSampleEventTexts {
public:
    explicit DRSampleEventTexts(DRSampleSettings settings);

    /// Events that are hard to convert, each for a reason that its title tells; the same in every sample.
    [[nodiscard]] std::vector<DRSampleEvent> hardEvents() const;

    /// One of the everyday events; the numbers from 0 on cycle through the calendars.
    [[nodiscard]] DRSampleEvent compose(int number, DRSampleRandom& random) const;

private:
    [[nodiscard]] DRSampleEvent holiday(int number) const;
    [[nodiscard]] DRSampleEvent birthday(DRSampleRandom& random) const;
    [[nodiscard]] DRSampleEvent appointment(const QString& kind, DRSampleRandom& random) const;
    void addGuests(DRSampleEvent& event, DRSampleRandom& random) const;
    [[nodiscard]] QString text(const QString& list, DRSampleRandom& random) const;
    [[nodiscard]] DRSampleEvent wholeDay(const QDate& day) const;

    DRSampleSettings m_settings;
    QJsonObject m_texts;
};
