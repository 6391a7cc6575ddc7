# The item editor window, its image well, and the items list's search field
# and stock filter.
target_sources(ledgerwick_ui PRIVATE
    ItemEditor.cpp ItemEditor.h ItemEditor.ui
    ItemImageWell.cpp ItemImageWell.h
    ItemListControls.cpp ItemListControls.h
)
