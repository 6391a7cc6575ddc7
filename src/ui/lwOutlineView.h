#pragma once

#include <QTreeView>

// The outline of the contacts list (companies with their people).
class lwOutlineView : public QTreeView
{
    Q_OBJECT
public:
    explicit lwOutlineView(QWidget *parent = nullptr);

    // Re-reads every row from the model.
    void reloadData(QObject *sender = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
