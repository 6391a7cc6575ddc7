# The preferences window and the notepad window.
target_sources(ledgerwick_ui PRIVATE PrefsWindow.cpp PrefsWindow.h PrefsWindow.ui NotepadWindow.cpp NotepadWindow.h)
