find_package(GTest REQUIRED)
include(GoogleTest)

# vx_add_test(name SOURCES ... LIBRARIES ... [GUI])
# Builds one GoogleTest executable and registers its cases with CTest. GUI
# tests run on Qt's offscreen platform so they need no display, and carry the
# label "gui".
function(vx_add_test name)
    cmake_parse_arguments(ARG "GUI" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gmock
                                          GTest::gtest_main vx::warnings)
    set(environment "")
    set(labels "")
    if(ARG_GUI)
        set(environment "QT_QPA_PLATFORM=offscreen")
        set(labels gui)
    endif()
    gtest_discover_tests(${name}
        DISCOVERY_TIMEOUT 60
        PROPERTIES ENVIRONMENT "${environment}" LABELS "${labels}")
endfunction()
