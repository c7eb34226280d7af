# The compiler settings of every target of ours, and the ways in which this project adds one.
include(cmake/Hardening.cmake)

add_library(korvel_settings INTERFACE)
target_include_directories(korvel_settings INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(korvel_settings INTERFACE
    -Wall -Wextra -Wpedantic $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local> -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual)
target_compile_definitions(korvel_settings INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING)
if(KORVEL_WERROR)
    target_compile_options(korvel_settings INTERFACE -Werror)
endif()
if(KORVEL_SANITIZE)
    target_compile_options(korvel_settings INTERFACE
        -fsanitize=${KORVEL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(korvel_settings INTERFACE -fsanitize=${KORVEL_SANITIZE})
else()
    korvel_harden(korvel_settings)
endif()

# korvel_library(NAME SOURCES file... [LINKS target...]): a static library of one folder of src/.
function(korvel_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE korvel_settings)
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
endfunction()

# korvel_program(NAME SOURCES file... [LINKS target...]): a program that people start.
function(korvel_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINKS} korvel_settings)
endfunction()

# korvel_installed_program(NAME SOURCES file... [LINKS target...]): one that is installed. Such programs find each other in
# the folder that they are in, in the build tree as well.
function(korvel_installed_program name)
    korvel_program(${name} ${ARGN})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
    install(TARGETS ${name} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()

# korvel_test(NAME [GUI] [FILTER filter] [SKIPPED_IF text] SOURCES file... [LINKS target...] [ENVIRONMENT VAR=value...]):
# a GoogleTest program, each of its tests that pass GoogleTest's filter known to CTest by its own name. LINKS names
# the libraries under test. A test that prints the text is listed as skipped. With GUI the program has one
# QApplication on the offscreen platform.
function(korvel_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "GUI" "FILTER;SKIPPED_IF" "SOURCES;LINKS;ENVIRONMENT")
    set(support korvel_test_support)
    if(arg_GUI)
        set(support korvel_gui_test_support)
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINKS} ${support} korvel_settings)
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE
        KORVEL_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data" KORVEL_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    set(skipped)
    if(arg_SKIPPED_IF)
        set(skipped SKIP_REGULAR_EXPRESSION "${arg_SKIPPED_IF}")
    endif()
    # The discovery of tests takes lists apart and would keep the first variable only, so that another program
    # sets them.
    set(launcher /usr/bin/env QT_QPA_PLATFORM=offscreen ${arg_ENVIRONMENT})
    set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "${launcher}")
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60 TEST_FILTER "${arg_FILTER}"
        PROPERTIES TIMEOUT 120 ${skipped})
endfunction()
