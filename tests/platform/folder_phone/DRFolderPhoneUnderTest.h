#pragma once

#include "tests/platform/device/DRDeviceConformance.h"

#include <QTemporaryDir>

class DRFolderPhone;

/// A phone in a temporary folder.
class DRFolderPhoneUnderTest final : public DRPhoneUnderTest {
public:
    DRFolderPhoneUnderTest(const DRPhoneContent& content,
                           quint64 capacityBytes,
                           DRTaskQueue& queue,
                           DRNotificationCenter& center);

    [[nodiscard]] DRDCDevicePointer device() override;
    [[nodiscard]] DRPhoneContent content() const override;
    void vanish() override;
    [[nodiscard]] std::shared_ptr<void> failWritesAfter(quint64 bytes) override;

    [[nodiscard]] QString path(const QString& relativePath = {}) const;

private:
    QTemporaryDir m_parent;
    std::shared_ptr<DRFolderPhone> m_phone;
};
