#pragma once

#include "wizard/pages/DRMGPage.h"
#include "wizard/steps/DRMGSelectionBox.h"

#include <functional>
#include <map>

class DRMGSelectDataEntry;

/// The tick boxes of a selection page, as widgets.
class DRMGSelectionEntries {
public:
    /// What the page's step says of a box, and is told.
    struct Source {
        std::function<QString(const QString& key)> label;
        std::function<QString(const DRMGSelectionBox& box)> stateText;
        std::function<void(const QString& key, bool isTicked)> setTicked;
    };

    DRMGSelectionEntries(QWidget& page, DRMGPageTools tools, Source source);

    /// Makes the widget of a category, hidden until `show` tells of its box. The page owns it.
    [[nodiscard]] DRMGSelectDataEntry* add(const DRMGSelectionCategory& category);

    /// Brings the widgets in line with the boxes; a widget without box is hidden.
    void show(const DRMGSelectionBoxes& boxes);

private:
    QWidget& m_page;
    DRMGPageTools m_tools;
    Source m_source;
    std::map<QString, DRMGSelectDataEntry*> m_entries; ///< by data-type key
};
