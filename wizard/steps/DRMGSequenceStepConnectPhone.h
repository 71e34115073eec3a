#pragma once

#include "platform/core/DRNotificationCenter.h"
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

private:
    void deviceWillBecomeActive();
    void deviceDidFinishEnumeration();
    void setDeviceDetected(bool detected);

    bool m_isDeviceDetected = false;
    std::vector<std::unique_ptr<DRNotificationCenter::Registration>> m_registrations;
};
