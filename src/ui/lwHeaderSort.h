#pragma once

class QAbstractItemModel;
class QHeaderView;

// Each click on a column header sorts the model by that column, flipping the
// order every time, as the lists always have.
void lwSortOnHeaderClicks(QHeaderView *header, QAbstractItemModel *model);
