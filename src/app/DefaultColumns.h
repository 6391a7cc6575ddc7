#pragma once

#include "app/DatabaseStore.h"
#include "core/lwDataSource.h"

#include <QList>

// The columns each main-window list shows until the user changes them: the
// window and the command-line export both start from these.
class DefaultColumns
{
public:
    static QList<lwDataSource::Column> forKind(DatabaseStore::Kind kind);
    // The accounts tab's money-in and statement tables.
    static QList<lwDataSource::Column> moneyIn();
    static QList<lwDataSource::Column> statement();
};
