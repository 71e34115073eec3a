#include "wizard/pages/DRMGPages.h"

#include "wizard/pages/DRMGCompletePage.h"
#include "wizard/pages/DRMGConnectPhonePage.h"
#include "wizard/pages/DRMGMemoryWarningPage.h"
#include "wizard/pages/DRMGNewBackupNeededPage.h"
#include "wizard/pages/DRMGPhoneIncompatiblePage.h"
#include "wizard/pages/DRMGRestoreChoosePage.h"
#include "wizard/pages/DRMGRestoreOutcomePage.h"
#include "wizard/pages/DRMGRestorePutBackPage.h"
#include "wizard/pages/DRMGSelectBackupPage.h"
#include "wizard/pages/DRMGSelectDataPage.h"
#include "wizard/pages/DRMGTransferPage.h"
#include "wizard/pages/DRMGWelcomePage.h"

#include <array>

namespace {

using Maker = QWidget* (*)(DRSequenceStep&, const DRMGPageTools&);

/// The view when the step is the one that it belongs to, else null.
template <typename Page, typename Step> QWidget* make(DRSequenceStep& step, const DRMGPageTools& tools)
{
    auto* const own = qobject_cast<Step*>(&step);
    return own == nullptr ? nullptr : new Page(*own, tools);
}

constexpr std::array<Maker, 12> kMakers{
    make<DRMGWelcomePage, DRMGSequenceStepWelcome>,
    make<DRMGSelectBackupPage, DRMGSequenceStepSelectBackup>,
    make<DRMGSelectDataPage, DRMGSequenceStepSelectData>,
    make<DRMGTransferPage, DRMGSequenceStepTransfer>,
    make<DRMGCompletePage, DRMGSequenceStepComplete>,
    make<DRMGNewBackupNeededPage, DRMGSequenceStepNewBackupNeeded>,
    make<DRMGConnectPhonePage, DRMGSequenceStepConnectPhone>,
    make<DRMGMemoryWarningPage, DRMGSequenceStepMemoryWarning>,
    make<DRMGPhoneIncompatiblePage, DRMGSequenceStepPhoneIncompatible>,
    make<DRMGRestoreChoosePage, DRMGRestoreStepChoose>,
    make<DRMGRestorePutBackPage, DRMGRestoreStepPutBack>,
    make<DRMGRestoreOutcomePage, DRMGRestoreStepOutcome>,
};

} // namespace

QWidget* DRMGPages::pageFor(DRSequenceStep& step, const DRMGPageTools& tools)
{
    for (const Maker maker : kMakers) {
        if (QWidget* const page = maker(step, tools)) {
            return page;
        }
    }
    return nullptr;
}
