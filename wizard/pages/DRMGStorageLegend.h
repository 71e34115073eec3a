#pragma once

#include "wizard/steps/DRMGSequenceStepMemoryWarning.h"

#include <QWidget>

#include <vector>

class QGridLayout;
class QLabel;

/// The figures of the storage bar: a line for each part, with the colour that the part has in the bar.
class DRMGStorageLegend final : public QWidget {
    Q_OBJECT

public:
    using Row = DRMGSequenceStepMemoryWarning::StorageRow;

    explicit DRMGStorageLegend(QWidget* parent = nullptr);

    /// Shows these; always as many.
    void showRows(const std::vector<Row>& rows);

private:
    class Swatch;

    struct Line {
        Swatch* swatch;
        QLabel* name;
        QLabel* size;
    };

    void addLine();

    QGridLayout* m_grid;
    std::vector<Line> m_lines;
};
