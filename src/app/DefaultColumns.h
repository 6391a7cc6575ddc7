#pragma once

#include "core/DatabaseStore.h"
#include "core/lwDataSource.h"

#include <QList>

// The columns each main-window list shows until the user changes them: the
// window and the command-line export both start from these.
class DefaultColumns
{
public:
    static QList<lwDataSource::Column> forKind(DatabaseStore::Kind kind);
};
