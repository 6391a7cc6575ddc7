#pragma once

#include <QColor>
#include <QTableView>

// The table of the lists: rows whose model gives a label colour are painted
// with a rounded band of that colour behind their cells.
class integrityTableView : public QTableView
{
    Q_OBJECT
public:
    explicit integrityTableView(QWidget *parent = nullptr);
    // Every row takes this colour instead of the model's (an invalid colour:
    // the model's again). The checkout's lines wear their sale's colour.
    void setRowColour(const QColor &colour);
    QColor rowColour() const { return m_rowColour; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QColor m_rowColour;
};
