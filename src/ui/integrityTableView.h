#pragma once

#include <QTableView>

// The table of the lists: rows whose model gives a label colour are painted
// with a rounded band of that colour behind their cells.
class integrityTableView : public QTableView
{
    Q_OBJECT
public:
    explicit integrityTableView(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
