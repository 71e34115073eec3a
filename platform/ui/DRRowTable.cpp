#include "platform/ui/DRRowTable.h"

#include <QHeaderView>

DRRowTable::DRRowTable(const QString& name, const QStringList& columnTitles, QWidget* parent)
    : QTableWidget(0, static_cast<int>(columnTitles.size()), parent)
{
    setAccessibleName(name);
    setHorizontalHeaderLabels(columnTitles);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false); // Tab leads on to the next part of the page
    setShowGrid(false);
    setAlternatingRowColors(true);
}

void DRRowTable::setRowHeight(int height)
{
    verticalHeader()->setDefaultSectionSize(height);
}

int DRRowTable::selectedRow() const
{
    const QModelIndexList selected = selectionModel()->selectedRows();
    return selected.isEmpty() ? -1 : selected.front().row();
}

QModelIndex DRRowTable::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (rowCount() > 0 && action == MoveHome) {
        return model()->index(0, 0);
    }
    if (rowCount() > 0 && action == MoveEnd) {
        return model()->index(rowCount() - 1, 0);
    }
    return QTableWidget::moveCursor(action, modifiers);
}
