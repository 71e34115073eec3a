#pragma once

#include <QTableWidget>

/// A list of rows with columns, of which one row as a whole can be selected.
class DRRowTable final : public QTableWidget {
    Q_OBJECT

public:
    /// `name`: for screen readers. The first column takes the room that the others leave.
    DRRowTable(const QString& name, const QStringList& columnTitles, QWidget* parent = nullptr);

    /// Of all rows, in points.
    void setRowHeight(int height);

    /// -1 when none is.
    [[nodiscard]] int selectedRow() const;

protected:
    /// Home and End lead to the first and the last row.
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
};
