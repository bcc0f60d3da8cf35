# Printing through Qt Print Support (page set-up, print and preview dialogs).
find_package(Qt6 REQUIRED COMPONENTS PrintSupport)
target_link_libraries(ostrivex_utilities PUBLIC Qt6::PrintSupport)
