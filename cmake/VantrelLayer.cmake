# What every target of the project has in common, and the helpers that declare layers and tests.

function(vantrel_compile_options target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_FOREACH
        QT_NO_CONTEXTLESS_CONNECT QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
        QT_DISABLE_DEPRECATED_BEFORE=0x060400)
endfunction()

# vantrel_layer(<name> SOURCES ... [DEPENDS <layer> ...] [LINK <target> ...])
#
# Declares src/<name> as the static library vantrel_<name>. A dependency on a layer that is not
# declared yet is refused: layers are added in order, so an arrow can only point backwards.
function(vantrel_layer name)
    cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS;LINK" ${ARGN})
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

# vantrel_test(<name> SOURCES ... LINK ...)
#
# One QTest program, run offscreen by ctest with a time limit of its own.
function(vantrel_test name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LINK" ${ARGN})
    qt_add_executable(${name} ${arg_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${arg_LINK} Qt6::Test)
    vantrel_compile_options(${name})
    add_test(NAME ${name} COMMAND ${name})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${arg_TIMEOUT}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_QUICK_BACKEND=software;TZ=Europe/Berlin;LC_ALL=C.UTF-8")
endfunction()
