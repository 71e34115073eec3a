#pragma once

#include "wizard/pages/DRMGSelectionEntries.h"
#include "wizard/steps/DRMGSequenceStepMemoryWarning.h"

class DRMGStorageLegend;
class DRMigrateMemoryWarningBar;
class QBoxLayout;

/// The media with their sizes, and the phone's storage as a bar and in figures.
class DRMGMemoryWarningPage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGMemoryWarningPage(DRMGSequenceStepMemoryWarning& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    void addEntries(QBoxLayout& column);

    DRMGSequenceStepMemoryWarning& m_step;
    DRHtmlTextView* m_body;
    DRMGSelectionEntries m_checkboxes;
    DRMigrateMemoryWarningBar* m_memoryBar;
    DRMGStorageLegend* m_legend;
    DRHtmlTextView* m_pressNext;
    QLabel* m_status;
};
