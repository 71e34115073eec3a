#pragma once

#include "wizard/steps/DRMGSummaryRow.h"

#include <QWidget>

class DRSequenceResourceManager;

/// What became of each kind of content, a line each, with what was lost below it.
class DRMGSummaryTable final : public QWidget {
    Q_OBJECT

public:
    /// The pictures outlive the table.
    explicit DRMGSummaryTable(const DRSequenceResourceManager& resources, QWidget* parent = nullptr);

    /// Shows these instead.
    void showRows(const std::vector<DRMGSummaryRow>& rows);

private:
    const DRSequenceResourceManager& m_resources;
    std::vector<DRMGSummaryRow> m_rows;
    QWidget* m_table = nullptr; ///< made anew for other rows
};
