#include "wizard/steps/DRMGStorageFigures.h"

DRMGStorageFigures storageFigures(quint64 usableCapacity, quint64 usableFreeBytes, const DRMGTickedMediaBytes& ticked)
{
    DRMGStorageFigures figures{.music = ticked.music,
                               .images = ticked.images,
                               .videos = ticked.videos,
                               .other = usableCapacity - usableFreeBytes,
                               .free = 0,
                               .total = usableCapacity};
    const quint64 left = usableCapacity - (figures.other + figures.selected());
    const bool isNegative = static_cast<qint64>(left) < 0;
    figures.free = isNegative ? 0 : left;
    return figures;
}
