# The picker's window.
target_sources(ledgerwick_ui PRIVATE PickerWindow.cpp PickerWindow.h)
