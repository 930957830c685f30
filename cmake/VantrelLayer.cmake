# What every target of the project has in common, and the helpers that declare layers and tests.

# Warnings are errors, and Qt's conveniences that hide a mistake are off.
function(vantrel_strict_flags target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
    target_compile_definitions(${target} PRIVATE
        QT_USE_QSTRINGBUILDER QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH
        QT_NO_CONTEXTLESS_CONNECT QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
        QT_DISABLE_DEPRECATED_BEFORE=0x060400)
endfunction()

# For every target whose code is written by hand.
function(vantrel_compile_options target)
    vantrel_strict_flags(${target})
    vantrel_use_pch(${target} code)
endfunction()

# For a target whose C++ is generated from QML.
function(vantrel_generated_options target)
    target_compile_options(${target} PRIVATE -w)
    vantrel_use_pch(${target} generated)
endfunction()

# vantrel_layer(<name> SOURCES ... [DEPENDS <layer> ...] [LINK <target> ...])
#
# Declares src/<name> as the static library vantrel_<name>. A dependency on a layer that is not
# declared yet is refused: layers are added in order, so an arrow can only point backwards.
function(vantrel_layer name)
    cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS;LINK" ${ARGN})
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "vantrel_layer(${name}): what is ${arg_UNPARSED_ARGUMENTS}?")
    endif()
    qt_add_library(vantrel_${name} STATIC ${arg_SOURCES})
    set_target_properties(vantrel_${name} PROPERTIES AUTOMOC ON)
    target_include_directories(vantrel_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    foreach(dependency IN LISTS arg_DEPENDS)
        if(NOT TARGET vantrel_${dependency})
            message(FATAL_ERROR "${name} may not depend on ${dependency}: it is a later layer")
        endif()
        target_link_libraries(vantrel_${name} PUBLIC vantrel_${dependency})
    endforeach()
    target_link_libraries(vantrel_${name} PUBLIC ${arg_LINK})
    vantrel_compile_options(vantrel_${name})
endfunction()

# vantrel_test(<name> SOURCES ... LINK ... [TIMEOUT <seconds>] [LABELS <label> ...] [RUN_WITH <command> ...])
#
# One QTest program, run offscreen by ctest with a time limit of its own (120 seconds unless said), as the
# last argument of the command RUN_WITH if there is one.
# The label "ui" marks tests that open a window: the sanitizer runs leave them out.
function(vantrel_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LINK;LABELS;RUN_WITH" ${ARGN})
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "vantrel_test(${name}): what is ${arg_UNPARSED_ARGUMENTS}?")
    endif()
    qt_add_executable(${name} ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${arg_LINK} Qt6::Test)
    vantrel_compile_options(${name})
    add_test(NAME ${name} COMMAND ${arg_RUN_WITH} $<TARGET_FILE:${name}>)
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${arg_TIMEOUT}
        LABELS "${arg_LABELS}"
        ENVIRONMENT "${VANTREL_TEST_ENVIRONMENT}")
endfunction()

# No test meets the real desktop, home, time zone or language.
set(VANTREL_TEST_ENVIRONMENT
    DBUS_SESSION_BUS_ADDRESS=disabled:
    QT_QPA_PLATFORM=offscreen
    QT_QUICK_BACKEND=software
    TZ=Europe/Berlin
    LC_ALL=C.UTF-8
    HOME=${PROJECT_BINARY_DIR}/test-home
    XDG_CONFIG_HOME=${PROJECT_BINARY_DIR}/test-home/.config
    XDG_DATA_HOME=${PROJECT_BINARY_DIR}/test-home/.local/share
    LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0
    TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/cmake/tsan.supp
    UBSAN_OPTIONS=print_stacktrace=1)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/test-home)
