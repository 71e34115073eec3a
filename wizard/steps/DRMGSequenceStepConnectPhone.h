#pragma once

#include "platform/core/DRNotificationCenter.h"
#include "platform/core/DRTimerSource.h"
#include "wizard/steps/DRMGSequenceStep.h"

#include <memory>
#include <vector>

/// The page that waits for the phone and goes on by itself as soon as it is ready, routing towards the transfer. Cancel
/// ends the wizard.
class DRMGSequenceStepConnectPhone final : public DRMGSequenceStep {
    Q_OBJECT

public:
    explicit DRMGSequenceStepConnectPhone(const DRMGContext& context);

    /// Moves on at once when the phone is ready, else waits for the device layer's events.
    void stepDidAppearInDirection(DRSequenceDirection direction) override;
    void stepWillDisappear() override;

    [[nodiscard]] bool sequenceShouldChangeToNextStep() override;

    /// Whether a phone was found that is not ready yet: the page then asks for patience instead of a cable.
    [[nodiscard]] bool isDeviceDetected() const { return m_isDeviceDetected; }

    /// Plain texts; the note may have two lines.
    [[nodiscard]] QString bodyText() const;
    [[nodiscard]] QString noteText() const;

    /// The page shows a spinner when a phone was found, else the picture. The text is what screen readers say of it.
    [[nodiscard]] bool showsSpinner() const { return m_isDeviceDetected; }
    [[nodiscard]] QString imageName() const;
    [[nodiscard]] QString imageText() const;

private:
    void goOnIfReady();
    void deviceWillBecomeActive();
    void deviceDidFinishEnumeration();
    void setDeviceDetected(bool detected);

    bool m_isDeviceDetected = false;
    std::unique_ptr<DRTimer> m_lookTimer;
    std::vector<std::unique_ptr<DRNotificationCenter::Registration>> m_registrations;
};
