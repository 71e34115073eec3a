#include "tests/platform/device/DRDeviceConformance.h"
#include "tests/platform/folder_phone/DRFolderPhoneUnderTest.h"

#include <QCoreApplication>
#include <QTest>

#include <memory>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    DRDeviceConformance suite(
        [](const DRPhoneContent& content, quint64 capacity, DRTaskQueue& queue, DRNotificationCenter& center) {
            return std::make_unique<DRFolderPhoneUnderTest>(content, capacity, queue, center);
        });
    return QTest::qExec(&suite, argc, argv);
}
