#include "ui/ItemListControls.h"

#include "core/Platform.h"
#include "products/ItemManager.h"

ItemListControls::ItemListControls(ItemManager *manager, QWidget *parent)
    : lwListControls(manager, manager->editorState().searchText, manager->editorState().stockFilter,
                     lwTr("Search code, name, description, condition, status"), parent)
{
}
