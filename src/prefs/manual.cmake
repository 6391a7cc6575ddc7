# The help manual: the Manual class and its pages, compiled into the model
# library as resources so the manual works offline.
target_sources(ledgerwick_model PRIVATE
    ${CMAKE_CURRENT_LIST_DIR}/Manual.cpp
    ${CMAKE_CURRENT_LIST_DIR}/Manual.h
    ${CMAKE_CURRENT_LIST_DIR}/manual/manual.qrc
)
