# Build settings of every target: warnings, floating point, sanitizers, tests.

add_library(rallyvane_options INTERFACE)
target_compile_features(rallyvane_options INTERFACE cxx_std_20)
# A match must replay to the bit with any compiler, so multiply and add must not be fused.
target_compile_options(rallyvane_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -ffp-contract=off)
target_compile_definitions(rallyvane_options INTERFACE
    QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_DISABLE_DEPRECATED_BEFORE=0x060400)

set(RALLYVANE_SANITIZE "" CACHE STRING "Sanitizers to build with, as the compiler names them")
if(RALLYVANE_SANITIZE)
    add_compile_options(-fsanitize=${RALLYVANE_SANITIZE} -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${RALLYVANE_SANITIZE})
endif()

option(RALLYVANE_FUZZERS "Build the fuzzers, and instrument all code for coverage" OFF)
if(RALLYVANE_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "RALLYVANE_FUZZERS needs clang, which provides libFuzzer.")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# rallyvane_library(NAME SOURCES... [LIBRARIES ...]): a static library whose only public include path
# is its own folder.
function(rallyvane_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES")
    add_library(${name} STATIC ${arg_UNPARSED_ARGUMENTS})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${arg_LIBRARIES} PRIVATE rallyvane_options)
endfunction()

# rallyvane_test(NAME SOURCES... [LIBRARIES ...]): a Qt Test program that CTest runs offscreen in its
# own folder. Reported as skipped if initTestCase() skips.
function(rallyvane_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES")
    add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} Qt6::Test rallyvane_options)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/run/${name})
    file(MAKE_DIRECTORY ${folder})
    add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY ${folder})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_FORCE_STDERR_LOGGING=1" TIMEOUT 900
        SKIP_REGULAR_EXPRESSION "SKIP +: [A-Za-z_]+::initTestCase\\(")
endfunction()

# rallyvane_show_in_windows(TARGET DESCRIPTION): gives a program its icon, version and manifest on
# Windows. Does nothing on other systems.
function(rallyvane_show_in_windows target description)
    if(NOT WIN32)
        return()
    endif()
    set(RALLYVANE_ICON ${CMAKE_BINARY_DIR}/rallyvane.ico)
    set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    configure_file(${CMAKE_SOURCE_DIR}/app/windows/program.rc.in ${resource} @ONLY)
    set_source_files_properties(${resource} PROPERTIES OBJECT_DEPENDS
        "${RALLYVANE_ICON};${CMAKE_SOURCE_DIR}/app/windows/program.manifest")
    target_sources(${target} PRIVATE ${resource})
    if(NOT TARGET icon)
        set(picture ${CMAKE_SOURCE_DIR}/packaging/icon/rallyvane.svg)
        add_custom_command(OUTPUT ${RALLYVANE_ICON}
            COMMAND ${CMAKE_SOURCE_DIR}/packaging/icon/make ${picture} ${RALLYVANE_ICON}
            DEPENDS ${picture} ${CMAKE_SOURCE_DIR}/packaging/icon/make)
        add_custom_target(icon DEPENDS ${RALLYVANE_ICON})
    endif()
    add_dependencies(${target} icon)
endfunction()
