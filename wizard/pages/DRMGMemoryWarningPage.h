#pragma once

#include "wizard/pages/DRMGSelectionEntries.h"
#include "wizard/steps/DRMGSequenceStepMemoryWarning.h"

#include <vector>

class DRMigrateMemoryWarningBar;
class QBoxLayout;
class QGridLayout;

/// The media with their sizes, and the phone's storage as a bar and in figures.
class DRMGMemoryWarningPage final : public DRMGPage {
    Q_OBJECT

public:
    DRMGMemoryWarningPage(DRMGSequenceStepMemoryWarning& step, const DRMGPageTools& tools);

protected:
    void render() override;

private:
    void addEntries(QBoxLayout& column);
    void showStorage();

    DRMGSequenceStepMemoryWarning& m_step;
    DRHtmlTextView* m_body;
    DRMGSelectionEntries m_checkboxes;
    DRMigrateMemoryWarningBar* m_memoryBar;
    QGridLayout* m_figures;
    std::vector<QLabel*> m_sizes; ///< one for each row of the storage
    DRHtmlTextView* m_pressNext;
    QLabel* m_status;
};
