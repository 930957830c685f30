# How this build tree compiles: the compiler cache, sanitizers, coverage and precompiled headers.
# Included once, before the first target. The presets set these options.

option(VANTREL_CCACHE "Compile through ccache when it is installed" ON)
option(VANTREL_PCH "Share precompiled headers between the targets; off shows missing includes" ON)
option(VANTREL_QML_AOT "Compile QML ahead of time; off saves build time and reads it at run time" ON)
option(VANTREL_COVERAGE "Count the lines and branches that run" OFF)
set(VANTREL_SANITIZE "" CACHE STRING "Sanitizers to compile in, as -fsanitize takes them")

if(VANTREL_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    find_program(CCACHE_PROGRAM ccache)
    mark_as_advanced(CCACHE_PROGRAM)
    if(CCACHE_PROGRAM)
        # Without this sloppiness ccache gives up on every file that uses a precompiled header.
        set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
            CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE_PROGRAM})
    endif()
endif()

if(VANTREL_SANITIZE)
    # A sanitizer is of use only where it sees the frames, and -O1 keeps the tests near their usual pace.
    add_compile_options(-fsanitize=${VANTREL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
    add_link_options(-fsanitize=${VANTREL_SANITIZE})
    if(VANTREL_SANITIZE MATCHES thread)
        # GCC 12 loses sight of what std::optional holds in code that is instrumented so, and warns of nothing.
        add_compile_options(-Wno-maybe-uninitialized)
    endif()
endif()

if(VANTREL_COVERAGE)
    add_compile_options(--coverage -fprofile-update=atomic)
    add_link_options(--coverage)
endif()

# To be spliced into every qt_add_qml_module().
set(VANTREL_QML_CACHEGEN "")
if(NOT VANTREL_QML_AOT)
    set(VANTREL_QML_CACHEGEN NO_CACHEGEN)
endif()

# Generated C++ (moc's is fine, that of the QML compiler is not) does not pass strict flags; it takes
# the same precompiled headers without them, and so each of the two kinds needs its own.
set(VANTREL_PCH_HEADERS
    <algorithm> <functional> <memory> <optional> <utility> <vector>
    <QAbstractListModel> <QDateTime> <QHash> <QJsonArray> <QJsonObject> <QObject> <QPointer> <QSet>
    <QString> <QStringList> <QTimer> <QVariant>
    <QCoroTask>)

# Lets `target` use the precompiled headers of `kind`, "code" or "generated". A target of the kind
# "code" must be compiled with exactly the options of vantrel_compile_options: GCC refuses others.
function(vantrel_use_pch target kind)
    if(NOT VANTREL_PCH)
        return()
    endif()
    set(owner vantrel_pch_${kind})
    if(NOT TARGET ${owner})
        set(source ${PROJECT_BINARY_DIR}/${owner}.cpp)
        file(CONFIGURE OUTPUT ${source} CONTENT "// Carries the shared precompiled headers.\n")
        add_library(${owner} OBJECT ${source})
        # No other library: GCC refuses the header to a target that lacks one of its definitions.
        target_link_libraries(${owner} PRIVATE Qt6::Core QCoro6::Core)
        set_target_properties(${owner} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
        target_precompile_headers(${owner} PRIVATE ${VANTREL_PCH_HEADERS})
        if(kind STREQUAL "code")
            vantrel_strict_flags(${owner})
        endif()
        vantrel_pch_flags(${owner})
    endif()
    target_precompile_headers(${target} REUSE_FROM ${owner})
    vantrel_pch_flags(${target})
endfunction()

# Programs are compiled position independent like libraries: one header serves both. ccache needs
# -fpch-preprocess to see what a precompiled header stands for.
function(vantrel_pch_flags target)
    target_compile_options(${target} PRIVATE -fPIC -fpch-preprocess)
endfunction()
