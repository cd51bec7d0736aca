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
if(RALLYVANE_SANITIZE STREQUAL "thread" AND NOT QT_FEATURE_sanitize_thread)
    # The sanitizer would not see its locks and queues, and report races that are none.
    message(FATAL_ERROR "The Qt in ${Qt6_DIR} is not built with the thread sanitizer. "
        "packaging/qt-tsan builds one; RALLYVANE_QT_TSAN names it. Configure with --fresh then.")
endif()

option(RALLYVANE_FUZZERS "Build the fuzzers, and instrument all code for coverage" OFF)
if(RALLYVANE_FUZZERS)
    if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
        message(FATAL_ERROR "RALLYVANE_FUZZERS needs clang, which provides libFuzzer.")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Seconds for a test, which takes longer with a sanitizer and on a busy machine.
set(RALLYVANE_TEST_TIMEOUT 900)

# rallyvane_library(NAME SOURCES... [LIBRARIES ...]): a static library whose only public include path
# is its own folder.
function(rallyvane_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES")
    add_library(${name} STATIC ${arg_UNPARSED_ARGUMENTS})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${arg_LIBRARIES} PRIVATE rallyvane_options)
endfunction()

# rallyvane_targets_below(FOLDER RESULT): the targets of a folder and its subfolders.
function(rallyvane_targets_below folder result)
    get_property(found DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
    get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
    foreach(below IN LISTS folders)
        rallyvane_targets_below(${below} more)
        list(APPEND found ${more})
    endforeach()
    set(${result} ${found} PARENT_SCOPE)
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
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_FORCE_STDERR_LOGGING=1"
        TIMEOUT ${RALLYVANE_TEST_TIMEOUT}
        SKIP_REGULAR_EXPRESSION "SKIP +: [A-Za-z_]+::initTestCase\\(")
endfunction()

# The maker, as programs, packages and the installer name it.
set(RALLYVANE_COMPANY "Vellaro")
set(RALLYVANE_COPYRIGHT "Copyright (C) 2026 ${RALLYVANE_COMPANY}")

# The program's icon, made from its drawing: in Windows' format, or as a picture for Qt.
if(WIN32)
    set(RALLYVANE_ICON ${CMAKE_BINARY_DIR}/rallyvane.ico)
else()
    set(RALLYVANE_ICON ${CMAKE_BINARY_DIR}/rallyvane.png)
endif()
set(drawing ${CMAKE_SOURCE_DIR}/packaging/icon/rallyvane.svg)
set(make_icon ${CMAKE_SOURCE_DIR}/packaging/icon/make)
add_custom_command(OUTPUT ${RALLYVANE_ICON}
    COMMAND ${make_icon} ${drawing} ${RALLYVANE_ICON} DEPENDS ${drawing} ${make_icon})
add_custom_target(icon DEPENDS ${RALLYVANE_ICON})

# rallyvane_describe(TARGET DESCRIPTION): gives a program its icon and, on Windows, its manifest and
# version; a library its version there.
function(rallyvane_describe target description)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL EXECUTABLE)
        add_dependencies(${target} icon)
    endif()
    if(WIN32)
        rallyvane_describe_to_windows(${target} ${type} ${description})
    elseif(type STREQUAL EXECUTABLE)
        target_sources(${target} PRIVATE ${CMAKE_SOURCE_DIR}/platform/linux/windowicon.cpp)
        qt_add_resources(${target} icon PREFIX / BASE ${CMAKE_BINARY_DIR} FILES ${RALLYVANE_ICON})
    endif()
endfunction()

function(rallyvane_describe_to_windows target type description)
    set(windows ${CMAKE_SOURCE_DIR}/app/windows)
    set(filetype VFT_DLL)
    set(suffix .dll)
    if(type STREQUAL EXECUTABLE)
        set(filetype VFT_APP)
        set(suffix .exe)
    endif()
    set(version ${CMAKE_CURRENT_BINARY_DIR}/${target}-version.rc)
    configure_file(${windows}/version.rc.in ${version} @ONLY)
    target_sources(${target} PRIVATE ${version})
    if(type STREQUAL EXECUTABLE)
        set(program ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
        configure_file(${windows}/program.rc.in ${program} @ONLY)
        set_source_files_properties(${program} PROPERTIES OBJECT_DEPENDS
            "${RALLYVANE_ICON};${windows}/program.manifest")
        target_sources(${target} PRIVATE ${program})
    endif()
endfunction()
